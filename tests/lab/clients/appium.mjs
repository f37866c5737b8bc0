// SPDX-License-Identifier: MIT
//
// Drives the device lab with public clients that were written for the Mac's tool, as their users do. The packages are
// taken as they are from the folder given: see README.md beside this file.
//
// usage: node appium.mjs FOLDER-WITH-node_modules

import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {createRequire} from 'node:module';
import path from 'node:path';
import {pathToFileURL} from 'node:url';

const folder = path.resolve(process.argv[2] ?? '.');
const packages = createRequire(path.join(folder, 'package.json'));
const fileOf = (...parts) => pathToFileURL(path.join(folder, 'node_modules', ...parts)).href;
const version = (name) => packages(`${name}/package.json`).version;

let passed = 0;
const failures = [];
async function check(name, step) {
  const start = performance.now();
  try {
    await step();
    passed += 1;
    console.log(`ok    ${name} (${Math.round(performance.now() - start)} ms)`);
  } catch (error) {
    failures.push(name);
    console.log(`FAIL  ${name}: ${error.message}`);
  }
}

const {Simctl} = await import(fileOf('node-simctl', 'build', 'lib', 'index.js'));
console.log(`node-simctl ${version('node-simctl')}`);
const simctl = new Simctl();

await check('finds xcrun', async () => assert.ok((await simctl.requireXcrun()).endsWith('/xcrun')));
await check('lists everything', async () => {
  const all = await simctl.list();
  assert.deepEqual(Object.keys(all).sort(), ['devices', 'devicetypes', 'pairs', 'runtimes']);
});
await check('lists devices by runtime', async () => {
  const devices = await simctl.getDevices();
  assert.ok(devices['18.2'].some((device) => device.name === 'iPhone 16 Pro' && device.state === 'Shutdown'));
});
await check('lists the devices of one platform version', async () => {
  const devices = await simctl.getDevices('17.5', 'iOS');
  assert.ok(devices.length > 0 && devices.every((device) => device.sdk === '17.5' && device.platform === 'iOS'));
});
await check('reads the text of the list', async () => {
  const parsed = await simctl.getDevicesByParsing();
  const json = await simctl.getDevices();
  const names = (devices) => Object.entries(devices).map(([sdk, list]) => [sdk, list.map((device) => device.udid).sort()]);
  assert.deepEqual(names(parsed).sort(), names(json).sort());
});
await check('refuses a platform version that is not there', async () => {
  await assert.rejects(simctl.getDevices('9.0'), /does not exist in the list of simctl SDKs/);
});
await check('lists device types', async () => assert.ok((await simctl.getDeviceTypes()).includes('iPhone 16')));
await check('finds a runtime in JSON', async () => {
  assert.equal(await simctl.getRuntimeForPlatformVersionViaJson('18.2'), 'com.apple.CoreSimulator.SimRuntime.iOS-18-2');
});
await check('finds a runtime in the text', async () => assert.equal(await simctl.getRuntimeForPlatformVersion('18.2'), '18.2'));
await check('reports what cannot be created', async () => {
  await assert.rejects(simctl.createDevice('None', 'iPhone 99', '18.2'), /Could not create simulator with name 'None'/);
});
await check('creates a device', async () => {
  simctl.udid = await simctl.createDevice('Client', 'iPhone 16 Pro', '18.2');
  assert.match(simctl.udid, /^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$/);
});
await check('refuses to open an address on a device that is off', async () => {
  await assert.rejects(simctl.openUrl('http://localhost/'), (error) => error.code === 149 || /current state: Shutdown/.test(error.message));
});
await check('shuts down a device that is off without an error', async () => simctl.shutdownDevice());
await check('boots and waits', async () => {
  await simctl.bootDevice();
  await simctl.startBootMonitor({timeout: 60000});
});
await check('says that the device is booted already', async () => {
  await assert.rejects(simctl.bootDevice(), /Unable to boot device in current state: Booted/);
});
await check('hears of the end of a boot', async () => {
  await new Promise((resolve, reject) => {
    simctl.startBootMonitor({onFinished: resolve, onError: reject, shouldPreboot: true, timeout: 30000}).catch(reject);
  });
});
await check('reads the environment', async () => assert.equal((await simctl.getEnv('SIMULATOR_UDID')).trim(), simctl.udid));
await check('opens an address', async () => simctl.openUrl('data:text/html,<title>Client</title>Hello'));
await check('reports an address that nothing opens', async () => {
  await assert.rejects(simctl.openUrl('nonsense:thing'), /-10814/);
});
await check('sets and clears the location', async () => {
  await simctl.setLocation(37.3349, -122.009);
  await simctl.setLocation('52.52', '13.405');
  await simctl.clearLocation();
});
await check('changes the appearance', async () => {
  assert.equal(await simctl.getAppearance(), 'light');
  await simctl.setAppearance('dark');
  assert.equal(await simctl.getAppearance(), 'dark');
});
await check('changes the contrast', async () => {
  assert.equal(await simctl.getIncreaseContrast(), 'disabled');
  await simctl.setIncreaseContrast('enabled');
  assert.equal(await simctl.getIncreaseContrast(), 'enabled');
});
await check('changes the text size', async () => {
  await simctl.setContentSize('increment');
  assert.equal(await simctl.getContentSize(), 'extra-large');
  await simctl.setContentSize('accessibility-medium');
  assert.equal(await simctl.getContentSize(), 'accessibility-medium');
  await assert.rejects(simctl.setContentSize('gigantic'));
});
await check('grants, revokes and resets permissions', async () => {
  await simctl.grantPermission('com.apple.mobilesafari', 'location');
  await simctl.revokePermission('com.apple.mobilesafari', 'location');
  await simctl.resetPermission('com.apple.mobilesafari', 'all');
});
await check('takes a picture of the screen', async () => {
  const picture = Buffer.from(await simctl.getScreenshot(), 'base64');
  assert.equal(picture.toString('latin1', 1, 4), 'PNG');
  assert.deepEqual([picture.readUInt32BE(16), picture.readUInt32BE(20)], [1206, 2622]);
});
await check('refuses to erase a device that is on', async () => {
  await assert.rejects(simctl.eraseDevice(400), /Unable to erase contents and settings in current state: Booted/);
});
await check('shuts down', async () => simctl.shutdownDevice());
await check('erases', async () => simctl.eraseDevice());
await check('deletes', async () => {
  await simctl.deleteDevice();
  const left = Object.values(await simctl.getDevices()).flat();
  assert.ok(!left.some((device) => device.udid === simctl.udid));
});
await check('names an unknown device', async () => {
  await assert.rejects(simctl.deleteDevice(), /Invalid device: /);
});

// Asks xcode-select which Xcode there is, and chooses its class by that.
const {getSimulator, simExists} = await import(fileOf('appium-ios-simulator', 'build', 'lib', 'index.js'));
console.log(`appium-ios-simulator ${version('appium-ios-simulator')}`);
const udid = execFileSync('xcrun', ['simctl', 'create', 'Second', 'iPhone 16', 'iOS18.2'], {encoding: 'utf8'}).trim();
let simulator;

await check('finds a device by its identifier', async () => {
  assert.equal(await simExists(udid), true);
  assert.equal(await simExists('AE05B8C8-8323-4429-9E14-AC6CCBB05A00'), false);
  simulator = await getSimulator(udid);
  assert.equal(simulator.udid, udid);
});
await check('refuses a device that is not there', async () => {
  await assert.rejects(getSimulator('AE05B8C8-8323-4429-9E14-AC6CCBB05A00'), /No sim found with udid/);
});
await check('reads a device', async () => {
  const stat = await simulator.stat();
  assert.deepEqual([stat.name, stat.state, stat.sdk], ['Second', 'Shutdown', '18.2']);
  assert.equal(await simulator.getPlatformVersion(), '18.2');
});
await check('sees that it is off', async () => assert.equal(await simulator.isRunning(), false));
await check('boots it', async () => {
  await simulator.boot();
  await simulator.waitForBoot(60000);
  assert.equal(await simulator.isRunning(), true);
  assert.equal(await simulator.isShutdown(), false);
});
await check('sets its location', async () => assert.equal(await simulator.setGeolocation('48.8584', '2.2945'), true));
await check('changes its appearance', async () => {
  await simulator.setAppearance('dark');
  assert.equal(await simulator.getAppearance(), 'dark');
});
await check('shuts it down, erases and deletes it', async () => {
  await simulator.shutdown({timeout: 10000});
  assert.equal(await simulator.isShutdown(), true);
  await simulator.clean();
  await simulator.delete();
  assert.deepEqual(await simulator.stat(), {});
});

console.log(`${passed} passed, ${failures.length} failed${failures.length > 0 ? `: ${failures.join('; ')}` : ''}`);
process.exit(failures.length > 0 ? 1 : 0);

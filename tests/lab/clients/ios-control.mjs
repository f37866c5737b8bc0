// SPDX-License-Identifier: MIT
//
// Drives the device lab with older public clients of the Mac's tool: simctl and ios-sim, and ios-simulator. The packages
// are taken as they are from the folder given: see README.md beside this file.
//
// usage: node ios-control.mjs FOLDER-WITH-node_modules

import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {createRequire} from 'node:module';
import path from 'node:path';

const folder = path.resolve(process.argv[2] ?? '.');
const packages = createRequire(path.join(folder, 'package.json'));
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
    console.log(`FAIL  ${name}: ${error.message ?? error}`);
  }
}

const simctl = packages('simctl');
packages('shelljs').config.silent = true;
console.log(`simctl ${version('simctl')}`);
const devices = () => Object.values(simctl.list({silent: true}).json.devices).flat();
let udid;

await check('finds the tool', () => assert.equal(simctl.check_prerequisites().code, 0));
await check('lists everything', () => {
  const {json} = simctl.list({silent: true});
  assert.ok(json.devices && json.devicetypes.length > 0 && json.runtimes.length > 0);
});
await check('creates a device', () => {
  const made = simctl.create('Old', 'com.apple.CoreSimulator.SimDeviceType.iPhone-15', 'com.apple.CoreSimulator.SimRuntime.iOS-17-5');
  assert.equal(made.code, 0);
  udid = made.stdout.trim();
  assert.ok(devices().some((device) => device.udid === udid));
});
await check('renames it', () => {
  assert.equal(simctl.rename(udid, 'Older').code, 0);
  assert.equal(devices().find((device) => device.udid === udid).name, 'Older');
});
await check('starts it with the Simulator', () => {
  assert.equal(simctl.extensions.start(udid).code, 0);
  assert.equal(execFileSync('xcrun', ['simctl', 'bootstatus', udid]).toString().includes(udid), true);
});
await check('reads its environment', () => assert.equal(simctl.getenv(udid, 'SIMULATOR_UDID').stdout.trim(), udid));
await check('opens an address', () => assert.equal(simctl.openurl(udid, 'data:text/html,Hello').code, 0));
await check('refuses to erase it while it is on', () => assert.equal(simctl.erase(udid).code, 149));
await check('shuts it down, erases and deletes it', () => {
  assert.equal(simctl.shutdown(udid).code, 0);
  assert.equal(simctl.erase(udid).code, 0);
  assert.equal(simctl.del(udid).code, 0);
});
await check('reads the help', () => assert.match(simctl.help('boot').stdout, /Usage: simctl boot/));

console.log(`ios-sim ${version('ios-sim')}`);
const iosSim = (...words) =>
  execFileSync(process.execPath, [path.join(folder, 'node_modules', 'ios-sim', 'bin', 'ios-sim'), ...words], {encoding: 'utf8'});
await check('shows the device types', () => assert.match(iosSim('showdevicetypes'), /iPhone-16-Pro, 18\.2/));
await check('shows the runtimes', () => assert.match(iosSim('showsdks'), /"iOS 18\.2" \(22C150\)/));

const Simulator = packages('ios-simulator');
console.log(`ios-simulator ${version('ios-simulator')}`);
const simulator = new Simulator();
await check('reads the list of devices', async () => {
  const list = await Simulator.getDevices();
  assert.ok(list.some((device) => device.name === 'iPhone 16 Pro' && device.runtime === 'iOS 18.2' && device.available));
});
await check('reads the list of runtimes', () => {
  assert.ok(Simulator.getAvaliableRuntimes().some((entry) => entry.value === 'com.apple.CoreSimulator.SimRuntime.iOS-17-5'));
});
await check('makes a device and boots it', async () => {
  simulator.setDeviceId(Simulator.create('Oldest', 'com.apple.CoreSimulator.SimDeviceType.iPhone-16', 'com.apple.CoreSimulator.SimRuntime.iOS-18-2'));
  await simulator.boot();
  execFileSync('xcrun', ['simctl', 'bootstatus', simulator.deviceId]);
  assert.equal(await simulator.isBooted(), true);
});
await check('shows it', async () => simulator.open());
await check('opens an address in it', async () => simulator.openURL('data:text/html,Hello'));
await check('shuts it down and deletes it', async () => {
  await simulator.shutdown();
  assert.equal(await simulator.isBooted(), false);
  simulator.remove();
});

console.log(`${passed} passed, ${failures.length} failed${failures.length > 0 ? `: ${failures.join('; ')}` : ''}`);
process.exit(failures.length > 0 ? 1 : 0);

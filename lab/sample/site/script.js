// SPDX-License-Identifier: MIT
// Shows what the page sees of its device, and reports it to the server that the page came from.
'use strict';

const page = document.body.dataset.page;
let position = null;

function show(name, text) {
  for (const output of document.querySelectorAll(`[data-show="${name}"]`)) {
    output.textContent = text;
  }
}

function degrees(value, positive, negative) {
  return `${Math.abs(value).toFixed(5)}° ${value < 0 ? negative : positive}`;
}

function showDevice() {
  const dark = window.matchMedia('(prefers-color-scheme: dark)').matches;
  show('viewport', `${window.innerWidth} × ${window.innerHeight}`);
  show('orientation', window.innerWidth > window.innerHeight ? 'CSS pixels, landscape' : 'CSS pixels, portrait');
  show('ratio', `${Math.round(window.devicePixelRatio * 100) / 100} ×`);
  show('touch', String(navigator.maxTouchPoints));
  show('scheme', dark ? 'Dark' : 'Light');
  show('agent', navigator.userAgent);
}

function showPosition() {
  const { latitude, longitude } = position.coords;
  show('location', `${degrees(latitude, 'N', 'S')}, ${degrees(longitude, 'E', 'W')}`);
  show('locationNote', `Updated at ${new Date(position.timestamp).toLocaleTimeString()}`);
}

function report() {
  const seen = {
    page,
    innerWidth: window.innerWidth,
    innerHeight: window.innerHeight,
    userAgent: navigator.userAgent,
    devicePixelRatio: window.devicePixelRatio,
    maxTouchPoints: navigator.maxTouchPoints,
    latitude: position ? position.coords.latitude : null,
    longitude: position ? position.coords.longitude : null,
  };
  const body = JSON.stringify(seen);
  // A report that gets lost because the server has ended is of no use to anybody; the page works without.
  fetch('/report', { method: 'POST', headers: { 'Content-Type': 'application/json' }, body }).catch(() => {});
}

function watchPosition() {
  if (!navigator.geolocation) {
    show('location', 'Not available here');
    return;
  }
  navigator.geolocation.watchPosition(
    (newPosition) => {
      position = newPosition;
      showPosition();
      report();
    },
    (error) => {
      show('location', error.code === error.PERMISSION_DENIED ? 'Not allowed' : 'No location set');
    },
    { enableHighAccuracy: true },
  );
}

function openAll(addresses) {
  for (const address of addresses.split(' ')) {
    window.open(address, '_blank');
  }
}

for (const button of document.querySelectorAll('[data-open]')) {
  button.addEventListener('click', () => openAll(button.dataset.open));
}

if (document.body.dataset.opens) {
  setTimeout(() => openAll(document.body.dataset.opens), 500);
}

function beRestless() {
  // WebKit allows a page a hundred changes of its address in thirty seconds.
  const ticksPerAddress = 4;
  let changesAddress = new URLSearchParams(location.search).has('address');
  let count = 0;
  document.querySelector('[data-restless-address]').addEventListener('click', () => {
    changesAddress = true;
  });
  setInterval(() => {
    count += 1;
    document.title = `Corvanta restless page ${count}`;
    if (changesAddress && count % ticksPerAddress === 0) {
      history.replaceState(null, '', `restless-${count}.html`);
    }
  }, 100);
}

if ('restless' in document.body.dataset) {
  beRestless();
}

window.addEventListener('resize', showDevice);
window.matchMedia('(prefers-color-scheme: dark)').addEventListener('change', showDevice);
window.addEventListener('load', () => {
  showDevice();
  report();
  watchPosition();
});

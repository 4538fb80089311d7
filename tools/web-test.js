// web-test.js - the demo's page in headless Chromium (run by `tools/web test`).
//
//   node tools/web-test.js <source root> <output folder> <native build folder>
//
// 1. Plays the demo's scripted run in the page and in the native player, and
//    fails unless both print the same frame hashes and the same end line.
// 2. Opens the page as a person would, clicks the courtyard floor, and fails
//    unless Pip has left where he stood and is drawn where the click sent him
//    (screenshots before and after in the output folder).
// 3. Prints what a frame costs in the page, and the page's size under gzip.
'use strict';
const fs = require('fs');
const http = require('http');
const path = require('path');
const zlib = require('zlib');
const { spawnSync } = require('child_process');
const puppeteer = require('puppeteer-core');

const [root, out, native] = process.argv.slice(2);
const page = path.join(root, 'build/web/demo-page');
const ticks = 4000, hashes = '640,1080';
// Pip stands by the tree; a click behind the well sends him round its front.
const pipStart = { x: 150, y: 420 }, target = { x: 460, y: 330 };

function fail(what) {
  console.error('tools/web test: FAILED: ' + what);
  process.exit(1);
}

// A static file server for the page, on a free port of the loopback.
function serve(folder) {
  const types = { '.html': 'text/html', '.js': 'text/javascript', '.wasm': 'application/wasm',
                  '.data': 'application/octet-stream' };
  const server = http.createServer((req, res) => {
    const name = path.join(folder, path.normalize(decodeURIComponent(req.url.split('?')[0])).replace(/^(\.\.[/\\])+/, ''));
    fs.readFile(name.endsWith('/') ? name + 'index.html' : name, (err, data) => {
      if (err) {
        res.writeHead(404);
        res.end();
        return;
      }
      res.writeHead(200, { 'Content-Type': types[path.extname(name)] || 'application/octet-stream' });
      res.end(data);
    });
  });
  return new Promise((resolve) => server.listen(0, '127.0.0.1', () => resolve(server)));
}

// What the native player prints for the same run: its hash lines and end line.
function nativeRun() {
  const work = fs.mkdtempSync(path.join(out, 'native-'));
  const r = spawnSync(path.join(native, 'player/quindle-player'),
                      [path.join(native, 'demo-game'), '--script', path.join(root, 'demo/playthrough.txt'),
                       '--ticks', String(ticks), '--hashes', hashes, '--no-gif', '--out', 'quindle-out'],
                      { cwd: work, encoding: 'utf8' });
  const lines = (r.stdout + r.stderr).split('\n').filter((l) => /^(hash |quindle-player: )/.test(l));
  return lines.concat('exit ' + r.status).join('\n');
}

// The canvas's pixels in a box, as RGBA bytes.
async function box(tab, at, size) {
  return tab.evaluate(({ x, y, s }) => {
    const c = document.getElementById('canvas');
    return Array.from(c.getContext('2d').getImageData(x - s, y - s, 2 * s, 2 * s).data);
  }, { x: at.x, y: at.y, s: size });
}

function changed(a, b) {
  let n = 0;
  for (let i = 0; i < a.length; i += 4)
    if (a[i] !== b[i] || a[i + 1] !== b[i + 1] || a[i + 2] !== b[i + 2])
      n++;
  return n;
}

function gzipSize(folder) {
  let total = 0;
  for (const f of fs.readdirSync(folder))
    if (/\.(html|js|wasm|data)$/.test(f))
      total += zlib.gzipSync(fs.readFileSync(path.join(folder, f)), { level: 9 }).length;
  return total;
}

(async () => {
  const expected = nativeRun();
  const server = await serve(page);
  const base = 'http://127.0.0.1:' + server.address().port + '/index.html';
  const browser = await puppeteer.launch({
    executablePath: '/usr/bin/chromium',
    headless: true,
    userDataDir: fs.mkdtempSync(path.join(out, 'profile-')),
    args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
           '--disable-component-update', '--disable-sync', '--autoplay-policy=user-gesture-required'],
  });
  try {
    // 1. The scripted run.
    const tab = await browser.newPage();
    const started = Date.now();
    await tab.goto(base + '?script=playthrough.txt&ticks=' + ticks + '&hashes=' + hashes);
    await tab.waitForSelector('#quindle-result[data-done]', { timeout: 300000 });
    const got = await tab.$eval('#quindle-result', (e) => e.textContent);
    const seconds = (Date.now() - started) / 1000;
    // Where each wrote its frames differs (the native player names its folder
    // absolutely); the rest of the end line must be the same.
    const same = (text) => text.trim().replace(/, written to .*$/gm, '');
    if (same(got) !== same(expected))
      fail('the page printed\n' + got + '\nbut the native player\n' + expected);
    console.log('tools/web test: the scripted run matches the native player:\n' + got);
    const frames = Number((/, (\d+) frames/.exec(got) || [0, 0])[1]);
    // What each frame cost the page's main thread, the yields to the browser left out.
    const costs = await tab.evaluate(() => (Module.quindleFrameMillis || []).map((ms, tick) => [tick, ms])
                                                                        .filter((e) => e && e[1] !== undefined));
    const sorted = costs.map((c) => c[1]).sort((a, b) => a - b);
    const at = (q) => sorted[Math.min(sorted.length - 1, Math.floor(q * sorted.length))] || 0;
    const worst = costs.reduce((w, c) => (c[1] > w[1] ? c : w), [0, 0]);
    console.log(`tools/web test: ${frames} frames in ${seconds.toFixed(1)} s, ` +
                `${(seconds * 1000 / Math.max(1, frames)).toFixed(2)} ms a frame on average (loading included); ` +
                `a frame's cost: median ${at(0.5).toFixed(3)} ms, 99th percentile ${at(0.99).toFixed(3)} ms, ` +
                `longest ${worst[1].toFixed(3)} ms at tick ${worst[0]}`);
    await tab.close();

    // 2. A click on the courtyard floor.
    const play = await browser.newPage();
    await play.setViewport({ width: 640, height: 480 });
    await play.goto(base);
    await play.waitForFunction(() => document.getElementById('quindle-status').textContent.startsWith('Click'),
                               { timeout: 60000 });
    await new Promise((r) => setTimeout(r, 1500));
    const canvas = await play.$('#canvas');
    const rect = await canvas.boundingBox();
    const scale = rect.width / 640;
    const startBefore = await box(play, pipStart, 12), targetBefore = await box(play, target, 12);
    await play.screenshot({ path: path.join(out, 'before-click.png') });
    await play.mouse.click(rect.x + target.x * scale, rect.y + target.y * scale);
    // The game draws its pointer where the mouse is: out of the way.
    await play.mouse.move(rect.x + 600 * scale, rect.y + 20 * scale);
    await new Promise((r) => setTimeout(r, 8000));
    await play.screenshot({ path: path.join(out, 'after-click.png') });
    const left = changed(startBefore, await box(play, pipStart, 12));
    const arrived = changed(targetBefore, await box(play, target, 12));
    if (left < 20 || arrived < 20)
      fail(`after the click Pip should have left (${pipStart.x}, ${pipStart.y}) and stood at (${target.x}, ` +
           `${target.y}): ${left} and ${arrived} pixels changed there (screenshots in ${out})`);
    console.log(`tools/web test: a click at (${target.x}, ${target.y}) made Pip walk there ` +
                `(screenshots ${out}/before-click.png, after-click.png)`);
  } finally {
    await browser.close();
    server.close();
  }
  console.log(`tools/web test: the page is ${(gzipSize(page) / 1e6).toFixed(2)} MB under gzip`);
  console.log('tools/web test: passed');
})().catch((e) => fail(e.stack || String(e)));

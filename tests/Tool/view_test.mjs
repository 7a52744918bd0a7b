// Opens pages of `orvalo view` in Chromium and holds what they show against what the models say.
// node view_test.mjs FOLDER PUPPETEER CHROMIUM: FOLDER holds the pages that view_test.py has the tool write.
import assert from 'node:assert/strict';
import {createRequire} from 'node:module';
import path from 'node:path';
import {pathToFileURL} from 'node:url';
import test from 'node:test';

const [folder, home, chromium] = process.argv.slice(2);
const resolved = createRequire(path.join(home, 'x')).resolve('puppeteer-core');
const {default: puppeteer} = await import(pathToFileURL(resolved));
const browser = await puppeteer.launch({executablePath: chromium, args: ['--no-sandbox', '--disable-dev-shm-usage']});

async function open(name, {width = 1300, height = 900, dark = false} = {}) {
  const page = await browser.newPage();
  const wrong = [];
  page.on('pageerror', (error) => wrong.push(String(error)));
  page.on('console', (message) => ['error', 'warn'].includes(message.type()) && !message.text().includes('willRead') && wrong.push(message.text()));
  const url = pathToFileURL(path.join(folder, name)).href;
  page.on('request', (request) => request.url() !== url && !request.url().startsWith('data:') && wrong.push(request.url()));
  page.on('dialog', (dialog) => { wrong.push(dialog.message()); dialog.dismiss(); });
  await page.setViewport({width, height});
  await page.emulateMediaFeatures([{name: 'prefers-color-scheme', value: dark ? 'dark' : 'light'}]);
  // Processor time, since others may keep the machine busy.
  const client = await page.createCDPSession();
  await client.send('Performance.enable', {timeDomain: 'threadTicks'});
  const start = Date.now();
  await page.goto(url);
  await page.waitForFunction(() => document.documentElement.dataset.ready);
  page.took = Date.now() - start;
  const {metrics} = await client.send('Performance.getMetrics');
  page.worked = 1000 * metrics.find(({name}) => name === 'TaskDuration').value;
  await page.waitForFunction(() => document.documentElement.dataset.complete);
  page.finish = async () => {
    assert.deepEqual(wrong, []);
    await page.close();
  };
  return page;
}

// The colour of the middle of a cell on a slice, off the cross.
const colourAt = (page, slice, cell) => page.evaluate((number, at) => {
  const {slices, paint} = window.orvalo;
  paint.call(window.orvalo);
  const {canvas, frame} = slices[number];
  const [middleX, middleY] = slices[number].pointOf(at);
  const [x, y] = [middleX + 0.3 * frame.scaleH, middleY + 0.3 * frame.scaleV];
  const ratio = canvas.width / canvas.clientWidth;
  return [...canvas.getContext('2d').getImageData(Math.round(x * ratio), Math.round(y * ratio), 1, 1).data].slice(0, 3);
}, slice, cell);
const position = (page) => page.evaluate(() => window.orvalo.position);
// A column's name.
const markup = '</script><script>alert(1)</script>';
const blue = [0, 114, 178];
const orange = [230, 159, 0];

async function pointAt(page, slice, cell) {
  const [x, y] = await page.evaluate((number, at) => {
    const box = window.orvalo.slices[number].canvas.getBoundingClientRect();
    const [px, py] = window.orvalo.slices[number].pointOf(at);
    return [box.x + px, box.y + py];
  }, slice, cell);
  await page.mouse.move(x, y);
  return [x, y];
}

const tip = (page) => page.$eval('#tip', (element) => [...element.children].map((line) => line.textContent));

test('a model: colours, legend, what is under the pointer', async () => {
  const page = await open('small.html');
  await page.evaluate(() => window.orvalo.moveTo([1, 1, 1]));
  // Of x 1..4, y 1..3, z 1..2: material 1 where y is 1, nothing at (4, 3, *), else material 2.
  assert.deepEqual(await colourAt(page, 0, [3, 1, 1]), blue);
  assert.deepEqual(await colourAt(page, 0, [3, 2, 1]), orange);
  assert.deepEqual(await colourAt(page, 1, [2, 1, 2]), blue);
  assert.deepEqual(await colourAt(page, 2, [1, 3, 2]), orange);
  const empty = await colourAt(page, 0, [4, 3, 1]);
  assert.ok(![String(blue), String(orange)].includes(String(empty)));
  const legend = await page.$$eval('#legend label', (labels) => labels.map((label) => label.textContent));
  assert.deepEqual(legend, ['#1 scriptalert1script8', '#2 b14', '#2 b (damping only)1']);
  await pointAt(page, 0, [3, 2, 1]);
  assert.deepEqual(await tip(page), ['(3, 2, 1)', 'from 1.5, 1, 0.5', '#2 b', 'temperature 23.5', 'row 7', 'sensor 4: u to s']);
  await pointAt(page, 0, [4, 3, 1]);
  assert.deepEqual(await tip(page), ['(4, 3, 1)', 'from 2, 1.5, 0.5', 'no cube']);
  await page.click('#legend label:nth-child(2) input');
  assert.deepEqual(await colourAt(page, 0, [3, 2, 1]).then(String) === String(orange), false);
  assert.deepEqual(await colourAt(page, 0, [3, 1, 1]), blue);
  await page.finish();
});

test('keys, clicks, wheel and typed numbers move all slices', async () => {
  const page = await open('small.html');
  await page.evaluate(() => window.orvalo.moveTo([2, 2, 1]));
  for (const [keys, expected] of [[['ArrowRight'], [3, 2, 1]], [['ArrowUp', 'PageUp'], [3, 3, 2]], [['PageUp'], [3, 3, 2]],
    [['Shift', 'ArrowLeft'], [1, 3, 2]], [['2', 'ArrowDown', 'PageDown'], [1, 2, 1]], [['3', 'ArrowRight', 'PageUp'], [2, 3, 1]]]) {
    if (keys[0] === 'Shift') await page.keyboard.down('Shift');
    for (const key of keys.filter((name) => name !== 'Shift')) await page.keyboard.press(key);
    await page.keyboard.up('Shift');
    assert.deepEqual(await position(page), expected, keys);
  }
  await page.mouse.click(...await pointAt(page, 0, [4, 1, 1]));
  assert.deepEqual(await position(page), [4, 1, 1]);
  await page.mouse.down();
  await pointAt(page, 0, [2, 3, 1]);
  await page.mouse.up();
  assert.deepEqual(await position(page), [2, 3, 1]);
  await page.mouse.wheel({deltaY: -100});
  await page.waitForFunction(() => window.orvalo.position[2] === 2);
  await page.$eval('#at-x', (input) => { input.value = '99'; input.dispatchEvent(new Event('change')); });
  assert.deepEqual(await position(page), [9, 3, 2]);
  const before = await page.evaluate(() => window.orvalo.slices[0].coordinatesAt(200, 90));
  await page.evaluate(() => window.orvalo.slices[0].zoomAt(200, 90, 3));
  assert.deepEqual(await page.evaluate(() => window.orvalo.slices[0].coordinatesAt(200, 90)), before);
  await page.finish();
});

test('panels: objects, diagnostics that jump, signals, histogram', async () => {
  const page = await open('small.html');
  const text = await page.$eval('#panels', (panels) => panels.textContent);
  for (const told of ['actuator 1: force along U', 'dump 1: u0', 'set 3', '2 points', 'vp 2', 'warning']) {
    assert.ok(text.includes(told), told);
  }
  await page.evaluate(() => window.orvalo.moveTo([1, 1, 1]));
  await page.$$eval('#diagnostics button', (buttons) => buttons.find((button) => button.title === 'Go to (3, 3, 2)').click());
  assert.deepEqual(await position(page), [3, 3, 2]);
  const drawn = (id) => page.waitForFunction((name) => {
    const canvas = document.getElementById(name);
    canvas.closest('details').open = true;
    return canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data.some((part) => part !== 0);
  }, {}, id);
  await drawn('signal');
  await drawn('spectrum');
  // The highest place of the spectrum of a sine of 200 kHz.
  const peak = await page.evaluate(async () => {
    const {dataset} = window.orvalo;
    const [signal] = dataset.facts.signals;
    const {frequencies, magnitudes} = window.orvaloSpectrum(await dataset.samples(signal), signal.step);
    return frequencies[magnitudes.indexOf(Math.max(...magnitudes))];
  });
  assert.ok(Math.abs(peak - 200) < 15, peak);
  await drawn('bars');
  assert.equal(await page.$eval('#bars', (canvas) => canvas.closest('details').dataset.counted), '22');
  await page.finish();
});

test('results: columns, range, extremes, values that are no numbers', async () => {
  const page = await open('&lt;results.html', {dark: true});
  assert.equal(await page.$eval('#files', (files) => files.textContent), '&lt;results.txt');
  assert.equal(await page.evaluate(() => document.documentElement.dataset.theme), 'dark');
  assert.deepEqual(await page.$$eval('#mode option', (options) => options.map((option) => option.value)), ['u', markup]);
  const at = (cell) => colourAt(page, 0, cell);
  await page.evaluate(() => window.orvalo.moveTo([0, 0, 5]));
  assert.deepEqual(await at([1, 0, 5]), [158, 212, 255]);
  assert.deepEqual(await at([2, 0, 5]), [66, 70, 78]);
  assert.deepEqual(await at([3, 0, 5]), [160, 32, 160]);
  assert.deepEqual(await page.$eval('#least', (input) => input.value), '-2');
  await page.$eval('#greatest', (input) => { input.value = '6'; input.dispatchEvent(new Event('change')); });
  assert.deepEqual(await at([-2, 0, 5]), [66, 70, 78]);
  await page.click('#go-min');
  assert.deepEqual(await position(page), [1, 0, 5]);
  await pointAt(page, 0, [3, 0, 5]);
  assert.deepEqual(await tip(page), ['(3, 0, 5)', 'u no number', `${markup} 1e+30`, 'row 4']);
  await page.select('#mode', markup);
  await page.waitForFunction((name) => window.orvalo.shown.field.name === name, {}, markup);
  await page.finish();
});

test('a model with errors shows its cells, and what is wrong first', async () => {
  const page = await open('broken.html', {width: 390, height: 800});
  assert.match(await page.$eval('#diagnostics', (panel) => (panel.open ? panel.textContent : '')), /^Diagnostics \d+error/);
  assert.equal(await page.$eval('#legend', (legend) => legend.children.length), 3);
  assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth));
  await page.finish();
});

test('few cubes in a huge box, and millions in a dense one', async () => {
  const sparse = await open('sparse.html');
  const seen = await sparse.evaluate(() => {
    const page = window.orvalo;
    page.moveTo([9999, 9999, 9999]);
    page.paint();
    const {canvas} = page.slices[0];
    const pixels = new Uint32Array(canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data.buffer);
    return [page.grid.find(9999, 9999, 9999).code, page.grid.find(5000, 5000, 5001), pixels.includes((255 << 24 | 178 << 16 | 114 << 8) >>> 0)];
  });
  assert.deepEqual(seen, [0, null, true]);
  await sparse.finish();
  const large = await open('large.html');
  console.log(`9 million cubes: ${large.took} ms, of which ${Math.round(large.worked)} ms of the processor`);
  assert.ok(large.worked > 10 && large.worked < 3000, large.worked);
  const found = await large.evaluate(() => [[1, 1, 1], [300, 300, 100], [18, 1, 1]].map((cell) => {
    const {cell: number, code} = window.orvalo.grid.find(...cell);
    return [number, code, window.orvalo.grid.coordinatesOf(number), window.orvalo.dataset.rows[number]];
  }));
  assert.deepEqual(found, [[0, 0, [1, 1, 1], 1], [8999999, 0, [300, 300, 100], 9000000], [17, 1, [18, 1, 1], 18]]);
  await large.finish();
});

test('a screenshot', async () => {
  const page = await open('plate.html', {width: 1400, height: 860});
  await page.evaluate(() => document.querySelectorAll('.panel').forEach((panel) => {
    panel.open = /Colours|signals/.test(panel.textContent.slice(0, 30));
  }));
  await pointAt(page, 0, [130, 60, 4]);
  await new Promise((resolve) => { setTimeout(resolve, 300); });
  await page.screenshot({path: path.join(folder, 'view.png')});
  await page.finish();
});

test.after(() => browser.close());

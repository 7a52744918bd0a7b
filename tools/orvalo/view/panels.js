import {drawBars, drawLine} from './plot.js';
import {spectrum, usefulLimit} from './spectrum.js';
import {mapColour, materialColour} from './colours.js';
import {cellText, countText, element, numberText} from './text.js';

const css = (colour) => `rgb(${colour.join(' ')})`;

function panel(title, count, open, ...content) {
  const summary = element('summary', {}, title);
  if (count !== null) summary.append(' ', element('span', {class: 'count'}, countText(count)));
  return element('details', {class: 'panel', open}, summary, element('div', {}, ...content));
}

// Content that is made when its panel is first opened, since it takes work.
function lazily(details, make) {
  const once = () => {
    if (!details.open || details.dataset.made) return;
    details.dataset.made = 'yes';
    make();
  };
  details.addEventListener('toggle', once);
  once();
  return details;
}

export function coloursPanel(page) {
  const {facts} = page.dataset;
  const select = element('select', {id: 'mode', 'aria-label': 'Colour by', onchange: () => page.colourBy(select.value)});
  if (facts.kind === 'model') select.append(element('option', {value: '', textContent: 'material'}));
  for (const field of facts.fields) select.append(element('option', {value: field.name, textContent: field.name}));
  select.value = page.mode;
  const scale = element('div', {id: 'scale'});
  const legend = element('div', {class: 'legend', id: 'legend'});
  facts.materials.forEach((material, code) => {
    const box = element('input', {
      type: 'checkbox', checked: !page.dataset.hidden.has(code), 'aria-label': `Show ${material.name}`,
      onchange: () => page.show(code, box.checked),
    });
    const name = material.damping ? `${material.name} (damping only)` : material.name;
    legend.append(element('label', {class: page.dataset.hidden.has(code) ? 'off' : ''}, box,
      element('span', {class: 'swatch', style: `background: ${css(materialColour(material.colour, material.damping))}`}),
      element('span', {class: 'name', textContent: material.number === null ? name : `#${material.number} ${name}`}),
      element('span', {class: 'number', textContent: countText(material.count)})));
  });
  return panel('Colours', null, true, element('div', {class: 'row'}, 'Colour by', select), scale, legend);
}

// What colours of a field mean: the bar, the range to set, and where the extremes are.
export function fillScale(page) {
  const place = document.getElementById('scale');
  const {field, range} = page.shown;
  place.replaceChildren();
  if (!field) return;
  const bar = element('div', {class: 'bar'});
  const stops = Array.from({length: 25}, (_, i) => css(mapColour(field.kind, page.dark,
    range[0] + ((range[1] - range[0]) * i) / 24, range)));
  bar.style.background = `linear-gradient(90deg, ${stops.join(', ')})`;
  const limits = range.map((limit, i) => element('input', {
    type: 'text', inputMode: 'decimal', value: String(Number(limit.toPrecision(6))), id: i ? 'greatest' : 'least',
    'aria-label': i ? 'End of the range' : 'Start of the range',
    onchange: () => page.setRange(limits.map((input) => Number(input.value))),
  }));
  const extremes = [['min', field.min, field.minCell, '▽'], ['max', field.max, field.maxCell, '△']]
    .filter(([, , cell]) => cell)
    .map(([name, value, cell, sign]) => element('button', {
      type: 'button', id: `go-${name}`, title: `Go to ${cellText(cell)}`, onclick: () => page.moveTo(cell),
    }, `${sign} ${name} ${numberText(value)}`));
  place.append(bar, element('div', {class: 'scale'}, ...[0, 0.5, 1].map((part) => element('span', {},
    numberText(range[0] + (range[1] - range[0]) * part, 4)))),
  element('div', {class: 'row'}, limits[0], 'to', limits[1],
    element('button', {type: 'button', onclick: () => page.setRange(null)}, 'Auto')),
  element('div', {class: 'row'}, ...extremes));
  if (!field.exact) {
    place.append(element('small', {}, `Values are rounded to ${countText(field.steps)} steps of the range; the extremes are exact.`));
  }
}

function list(page, entries) {
  return element('ul', {class: 'list'}, ...entries.map(({name, cell, small, before}) => {
    const item = element('li');
    if (before) item.append(element('span', {class: before}, before), ' ');
    item.append(cell ? element('button', {type: 'button', title: `Go to ${cellText(cell)}`, onclick: () => page.moveTo(cell)}, name)
      : element('span', {}, name));
    for (const line of small) item.append(element('small', {}, line));
    return item;
  }));
}

export function objectsPanel(page) {
  const {objects} = page.dataset.facts;
  if (objects.length === 0) return null;
  return panel('Actuators, sensors and more', objects.length, false, list(page, objects.map(({name, cell, facts}) => (
    {name, cell, small: facts}))));
}

export function diagnosticsPanel(page) {
  const all = page.dataset.facts.diagnostics;
  if (all.length === 0) return null;
  const open = all.some(({severity}) => severity === 'error');
  const diagnostics = ['error', 'warning'].flatMap((severity) => all.filter((found) => found.severity === severity));
  const details = panel('Diagnostics', diagnostics.length, open, list(page, diagnostics.map((found) => (
    {name: found.message, cell: found.cell, before: found.severity, small: [`${found.place} ${found.rule}`]}))));
  details.id = 'diagnostics';
  return details;
}

export function signalsPanel(page) {
  const {signals} = page.dataset.facts;
  if (signals.length === 0) return null;
  const select = element('select', {'aria-label': 'Signal'}, ...signals.map(({name}, i) => element('option', {value: i}, name)));
  const [time, frequency] = [element('canvas', {id: 'signal'}), element('canvas', {id: 'spectrum'})];
  const details = panel('Excitation signals', signals.length, false, element('div', {class: 'row'}, select),
    element('h3', {}, 'Over time'), time, element('h3', {}, 'Spectrum'), frequency);
  const draw = async () => {
    const signal = signals[select.value];
    const samples = await page.dataset.samples(signal);
    const times = Float64Array.from(samples, (_, i) => signal.start + i * signal.step);
    drawLine(time, times, samples, undefined, 'microseconds', '--accent');
    const found = spectrum(samples, signal.step);
    drawLine(frequency, found.frequencies, found.magnitudes, usefulLimit(found), 'kilohertz', '--second');
    details.dataset.drawn = select.value;
  };
  select.addEventListener('change', draw);
  details.redraw = () => details.open && draw();
  return lazily(details, draw);
}

export function histogramPanel(page) {
  const {fields} = page.dataset.facts;
  if (fields.length === 0) return null;
  const select = element('select', {'aria-label': 'Column'}, ...fields.map(({name}) => element('option', {value: name}, name)));
  const canvas = element('canvas', {id: 'bars'});
  const note = element('small', {});
  const details = panel('Histogram', null, page.dataset.facts.kind === 'results', element('div', {class: 'row'}, select), canvas, note);
  const draw = async () => {
    const field = await page.dataset.field(select.value);
    // Of few steps each bar holds as many as the others.
    const count = field.exact || field.steps > 1000 ? 48 : [42, 30, 12].find((parts) => field.steps % parts === 0);
    const bins = new Array(count).fill(0);
    let others = 0;
    const span = field.max - field.min || 1;
    const partOf = (value, level) => (field.exact ? (value - field.min) / span : level / field.steps);
    for (const level of field.levels) {
      const value = field.values[level];
      if (level === field.missing) continue;
      if (!Number.isFinite(value)) ++others;
      else ++bins[Math.min(Math.floor(partOf(value, level) * count), count - 1)];
    }
    drawBars(canvas, bins, [field.min, field.max], select.value);
    note.textContent = others > 0 ? `${countText(others)} values are not finite.` : '';
    details.dataset.counted = String(bins.reduce((a, b) => a + b, 0));
  };
  select.addEventListener('change', draw);
  details.redraw = () => details.open && draw();
  return lazily(details, draw);
}

export function summaryPanel(page) {
  const {summary, note} = page.dataset.facts;
  const content = [element('pre', {textContent: summary})];
  if (note) content.unshift(element('p', {}, note));
  return panel('Summary', null, page.dataset.facts.box === null, ...content);
}

export function keysPanel() {
  const keys = [['drag, click', 'place in all slices'], ['wheel', 'step the slice'], ['Ctrl + wheel, + −', 'zoom'],
    ['Shift + drag', 'move the picture'], ['double click, 0', 'all of it'], ['arrow keys', 'step in the slice; with Shift by 10'],
    ['Page Up, Page Down', 'step the slice'], ['1 2 3', 'which slice keys are for']];
  return panel('Keys', null, false, ...keys.map(([key, does]) => element('div', {class: 'row'}, element('kbd', {}, key), does)));
}

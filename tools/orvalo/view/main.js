import {mapColour, materialColour, pixelOf} from './colours.js';
import {Dataset} from './dataset.js';
import {Slice} from './slice.js';
import {coloursPanel, diagnosticsPanel, fillScale, histogramPanel, keysPanel, objectsPanel, signalsPanel, summaryPanel}
  from './panels.js';
import {spectrum} from './spectrum.js';
import {cellText, element, numberText} from './text.js';

const root = document.documentElement;

// All that is shown, and what the user does with it.
class Page {
  constructor(facts) {
    this.datasets = facts.files.map((file) => new Dataset(file));
    this.position = [0, 0, 0];
    const canvases = document.querySelectorAll('#slices canvas');
    this.slices = [2, 1, 0].map((axis, i) => new Slice(axis, canvases[i], this));
    [this.active] = this.slices;
    this.tip = document.getElementById('tip');
    this.makeHeader();
    this.setTheme(matchMedia('(prefers-color-scheme: dark)').matches);
    document.addEventListener('keydown', (event) => this.key(event));
    new ResizeObserver(() => this.fit()).observe(document.getElementById('slices'));
  }

  fit() {
    if (!this.dataset?.grid) return;
    const parts = [0.5, 0.32, 0.32];
    this.slices.forEach((slice, i) => slice.fit(parts[i]));
    this.redraw();
  }

  makeHeader() {
    const files = document.getElementById('files');
    this.tabs = this.datasets.map((dataset, i) => {
      const tab = element('button', {type: 'button', textContent: dataset.facts.name.split('/').pop(), title: dataset.facts.name,
        onclick: () => this.open(i)});
      files.append(tab);
      return tab;
    });
    this.inputs = [0, 1, 2].map((axis) => {
      const input = element('input', {type: 'number', id: `at-${'xyz'[axis]}`, onchange: () => {
        const cell = [...this.position];
        cell[axis] = Math.round(Number(input.value));
        this.moveTo(cell);
      }});
      document.getElementById('place').append(element('label', {}, 'xyz'[axis], input));
      return input;
    });
    document.getElementById('theme').addEventListener('click', () => this.setTheme(!this.dark));
  }

  setTheme(dark) {
    this.dark = dark;
    root.dataset.theme = dark ? 'dark' : 'light';
    const style = getComputedStyle(root);
    const value = (name) => style.getPropertyValue(name).trim();
    this.textColour = value('--text');
    this.mutedColour = value('--muted');
    this.font = value('--font');
    this.emptyPixels = ['--empty', '--hatch'].map((name) => (
      pixelOf([1, 3, 5].map((i) => parseInt(value(name).slice(i, i + 2), 16)))));
    if (!this.dataset) return;
    this.makeColours();
    this.redraw();
    for (const panel of document.querySelectorAll('.panel')) panel.redraw?.();
  }

  get grid() {
    return this.dataset.grid;
  }

  async open(number) {
    const dataset = this.datasets[number];
    if (!dataset.loaded) await (dataset.loaded = dataset.load());
    const first = !this.dataset;
    this.dataset = dataset;
    this.tabs.forEach((tab, i) => tab.setAttribute('aria-pressed', String(i === number)));
    document.title = `${dataset.facts.name} – orvalo view`;
    const there = Boolean(dataset.grid);
    document.getElementById('slices').hidden = !there;
    document.getElementById('place').hidden = !there;
    this.mode = dataset.mode ?? (dataset.facts.kind === 'model' ? '' : dataset.facts.fields[0]?.name ?? '');
    const panels = [there && coloursPanel(this), diagnosticsPanel(this), objectsPanel(this), signalsPanel(this),
      there && histogramPanel(this), summaryPanel(this), keysPanel()];
    document.getElementById('panels').replaceChildren(...panels.filter(Boolean));
    if (there) {
      for (const slice of this.slices) [slice.zoom, slice.middle] = [1, null];
      this.inputs.forEach((input, axis) => {
        input.min = this.grid.first[axis];
        input.max = this.grid.first[axis] + this.grid.size[axis] - 1;
      });
      await this.colourBy(this.mode);
      this.fit();
      this.moveTo(first ? dataset.facts.start : this.position);
      this.paint();
    }
    root.dataset.ready = String(number);
    await dataset.loadAllFields();
    root.dataset.complete = String(number);
  }

  async colourBy(mode) {
    const {dataset} = this;
    const field = mode === '' ? null : await dataset.field(mode);
    this.mode = dataset.mode = mode;
    document.getElementById('legend').classList.toggle('plain', field !== null);
    this.shown = {field, range: field ? dataset.ranges?.[mode] ?? this.ownRange(field) : null};
    this.makeColours();
    this.redraw();
  }

  // That of the values, and with 0 in the middle where colours part there.
  ownRange(field) {
    if (field.kind !== 'diverging') return [field.min, field.max];
    const limit = Math.max(Math.abs(field.min), Math.abs(field.max)) || 1;
    return [-limit, limit];
  }

  setRange(range) {
    const {field} = this.shown;
    const good = range && range.every(Number.isFinite) && range[0] < range[1];
    (this.dataset.ranges ??= {})[this.mode] = good ? range : undefined;
    this.shown.range = good ? range : this.ownRange(field);
    this.makeColours();
    this.redraw();
  }

  makeColours() {
    const {field, range} = this.shown ?? {};
    const {materials} = this.dataset.facts;
    if (!this.shown) return;
    this.shown.codeColours = materials.map((material, code) => (this.dataset.hidden.has(code) ? 0
      : pixelOf(materialColour(material.colour, material.damping))));
    if (field) {
      const without = pixelOf(this.dark ? [70, 76, 84] : [200, 205, 211]);
      this.shown.levelColours = Uint32Array.from(field.values, (value, level) => (level === field.missing ? without
        : pixelOf(mapColour(field.kind, this.dark, value, range))));
    }
    if (document.getElementById('scale')) fillScale(this);
  }

  show(code, visible) {
    if (visible) this.dataset.hidden.delete(code);
    else this.dataset.hidden.add(code);
    document.querySelectorAll('#legend label')[code].className = visible ? '' : 'off';
    this.makeColours();
    this.redraw();
  }

  activate(slice) {
    this.active = slice;
  }

  moveTo(cell) {
    const {first, size} = this.grid;
    this.position = cell.map((coordinate, axis) => Math.min(Math.max(coordinate || 0, first[axis]), first[axis] + size[axis] - 1));
    this.inputs.forEach((input, axis) => { input.value = this.position[axis]; });
    this.redraw();
  }

  // Whether there was anywhere to go.
  step(axis, by) {
    const before = this.position[axis];
    const cell = [...this.position];
    cell[axis] += by;
    this.moveTo(cell);
    return this.position[axis] !== before;
  }

  key(event) {
    if (!this.grid || event.ctrlKey || event.metaKey || event.altKey) return;
    if (event.target.closest('input, select, summary, pre, .list')) return;
    const {h, v, axis, canvas} = this.active;
    const by = event.shiftKey ? 10 : 1;
    const actions = {
      ArrowLeft: () => this.step(h, -by), ArrowRight: () => this.step(h, by),
      ArrowDown: () => this.step(v, -by), ArrowUp: () => this.step(v, by),
      PageUp: () => this.step(axis, by), PageDown: () => this.step(axis, -by),
      '+': () => this.active.zoomAt(canvas.clientWidth / 2, canvas.clientHeight / 2, 1.5),
      '-': () => this.active.zoomAt(canvas.clientWidth / 2, canvas.clientHeight / 2, 1 / 1.5),
      0: () => this.active.reset(), 1: () => this.slices[0].canvas.focus(), 2: () => this.slices[1].canvas.focus(),
      3: () => this.slices[2].canvas.focus(),
    };
    if (!actions[event.key]) return;
    event.preventDefault();
    actions[event.key]();
  }

  // Marks of a slice; those that are most worth seeing come last, on top.
  marksIn(axis) {
    const at = this.position[axis];
    const {field} = this.shown;
    const extremes = field ? [{kind: 'min', cell: field.minCell}, {kind: 'max', cell: field.maxCell}] : [];
    return [...this.dataset.setMarks, ...this.dataset.facts.marks, ...extremes].filter(({cell}) => cell && cell[axis] === at);
  }

  // Shows what is at a cell beside the pointer.
  hover(cell, x, y) {
    const lines = cell && this.factsAt(cell);
    this.tip.hidden = !lines;
    if (!lines) return;
    this.tip.replaceChildren(...lines.map((line) => element('div', {textContent: line})));
    const {width, height} = this.tip.getBoundingClientRect();
    this.tip.style.left = `${Math.max(4, x + 16 + width > innerWidth ? x - width - 16 : x + 16)}px`;
    this.tip.style.top = `${Math.max(4, y + 16 + height > innerHeight ? y - height - 16 : y + 16)}px`;
  }

  factsAt(cell) {
    const {dataset, grid} = this;
    if (cell.some((coordinate, axis) => coordinate < grid.first[axis] || coordinate >= grid.first[axis] + grid.size[axis])) return null;
    const {facts} = dataset;
    const lines = [cellText(cell)];
    if (facts.cellSize) lines.push(`from ${cell.map((coordinate) => numberText(coordinate * facts.cellSize)).join(', ')}`);
    const found = grid.find(...cell);
    if (found) {
      const material = facts.materials[found.code];
      if (material.number !== null) lines.push(`#${material.number} ${material.name}${material.damping ? ', damping only' : ''}`);
      for (const [name, field] of dataset.fields) {
        if (field.has(found.cell)) lines.push(`${name} ${field.exact ? '' : '≈ '}${numberText(field.valueAt(found.cell), field.exact ? 9 : 5)}`);
      }
      if (dataset.rows) lines.push(`row ${dataset.rows[found.cell]}`);
    } else {
      lines.push('no cube');
    }
    const same = (mark) => mark.cell && mark.cell.every((coordinate, axis) => coordinate === cell[axis]);
    lines.push(...facts.marks.filter(same).slice(0, 6).map(({name}) => name),
      ...new Set(dataset.setMarks.filter(same).map(({name}) => name)));
    return lines;
  }

  redraw() {
    if (this.waiting) return;
    this.waiting = requestAnimationFrame(() => this.paint());
  }

  paint() {
    cancelAnimationFrame(this.waiting);
    this.waiting = 0;
    if (!this.dataset?.grid || !this.shown) return;
    for (const slice of this.slices) {
      slice.draw();
      const caption = slice.canvas.previousElementSibling;
      const axis = 'xyz'[slice.axis];
      caption.replaceChildren(element('b', {}, slice.title), element('span', {}, `${axis} = ${this.position[slice.axis]}`));
    }
  }
}

const page = new Page(JSON.parse(document.getElementById('facts').textContent));
// For tests, and for those who like a console.
window.orvalo = page;
window.orvaloSpectrum = spectrum;
page.open(0);

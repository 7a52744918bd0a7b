import {Field, decodeFloats, decodeRows, inflate} from './codec.js';
import {Grid} from './grid.js';

function block(number) {
  return inflate(document.getElementById(`block-${number}`).textContent);
}

// A file of the page, decoded as far as it is looked at.
export class Dataset {
  constructor(facts) {
    this.facts = facts;
    this.fields = new Map();
    this.signals = new Map();
    this.hidden = new Set();
  }

  async load() {
    const {box, cells, runs} = this.facts;
    if (!box) return;
    this.grid = new Grid(box.first, box.size, cells, await block(runs));
    this.setMarks = [];
    for (const set of this.facts.sets) {
      const points = decodeFloats(await block(set.block), Int16Array);
      for (let i = 0; i < points.length; i += 3) {
        this.setMarks.push({kind: 'set', name: set.name, cell: [points[i], points[i + 1], points[i + 2]]});
      }
    }
  }

  async field(name) {
    const facts = this.facts.fields.find((field) => field.name === name);
    if (!facts) return null;
    if (!this.fields.has(name)) {
      const values = facts.values === null ? null : decodeFloats(await block(facts.values), Float64Array);
      this.fields.set(name, new Field(facts, await block(facts.levels), values));
    }
    return this.fields.get(name);
  }

  // Fields that were looked at and others, for what stands under the pointer.
  async loadAllFields() {
    for (const field of this.facts.fields) await this.field(field.name);
    if (this.facts.rows !== null && this.grid) this.rows = decodeRows(await block(this.facts.rows), this.facts.cells);
  }

  async samples(signal) {
    if (!this.signals.has(signal.block)) {
      this.signals.set(signal.block, decodeFloats(await block(signal.block), Float32Array));
    }
    return this.signals.get(signal.block);
  }

  marks() {
    return this.facts.marks;
  }
}

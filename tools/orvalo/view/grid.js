import {VarintReader} from './codec.js';

// The cells of a box as runs of equal ones along x. Only rows with cells take memory, so that the box may be of any size.
export class Grid {
  constructor(first, size, cellCount, bytes) {
    this.first = first;
    this.size = size;
    this.cellCount = cellCount;
    // Runs: where they start along x, how long they are, the code of their cells, and the number of the first cell.
    this.capacity = 1024;
    this.runs = 0;
    this.starts = new Uint16Array(this.capacity);
    this.lengths = new Uint32Array(this.capacity);
    this.codes = new Uint16Array(this.capacity);
    this.cells = new Uint32Array(this.capacity);
    this.rowNumbers = [];
    this.rowRuns = [];
    this.decode(new VarintReader(bytes));
    this.rowNumbers = Float64Array.from(this.rowNumbers);
    this.rowRuns = Uint32Array.from([...this.rowRuns, this.runs]);
  }

  decode(reader) {
    const width = this.size[0];
    let place = 0;
    let cell = 0;
    while (!reader.ended) {
      place += reader.next();
      let length = reader.next();
      const code = reader.next();
      while (length > 0) {
        const x = place % width;
        const part = Math.min(length, width - x);
        this.add((place - x) / width, x, part, code, cell);
        place += part;
        cell += part;
        length -= part;
      }
    }
  }

  add(row, x, length, code, cell) {
    if (this.runs === this.capacity) this.grow();
    if (this.rowNumbers.length === 0 || this.rowNumbers[this.rowNumbers.length - 1] !== row) {
      this.rowNumbers.push(row);
      this.rowRuns.push(this.runs);
    }
    this.starts[this.runs] = x;
    this.lengths[this.runs] = length;
    this.codes[this.runs] = code;
    this.cells[this.runs] = cell;
    ++this.runs;
  }

  grow() {
    this.capacity *= 2;
    for (const name of ['starts', 'lengths', 'codes', 'cells']) {
      const larger = new this[name].constructor(this.capacity);
      larger.set(this[name]);
      this[name] = larger;
    }
  }

  // The first row with cells whose number is not below.
  rowFrom(number) {
    let low = 0;
    let high = this.rowNumbers.length;
    while (low < high) {
      const middle = (low + high) >>> 1;
      if (this.rowNumbers[middle] < number) low = middle + 1;
      else high = middle;
    }
    return low;
  }

  // The last run of a row that starts at x or before.
  runAt(row, x) {
    let low = this.rowRuns[row];
    let high = this.rowRuns[row + 1];
    while (low < high) {
      const middle = (low + high) >>> 1;
      if (this.starts[middle] <= x) low = middle + 1;
      else high = middle;
    }
    return low - 1;
  }

  // Number and code of the cell at coordinates, or null.
  find(x, y, z) {
    const [dx, dy, dz] = [x - this.first[0], y - this.first[1], z - this.first[2]];
    const [nx, ny, nz] = this.size;
    if (dx < 0 || dy < 0 || dz < 0 || dx >= nx || dy >= ny || dz >= nz) return null;
    const number = dz * ny + dy;
    const row = this.rowFrom(number);
    if (this.rowNumbers[row] !== number) return null;
    const run = this.runAt(row, dx);
    if (run < this.rowRuns[row] || dx >= this.starts[run] + this.lengths[run]) return null;
    return {cell: this.cells[run] + dx - this.starts[run], code: this.codes[run]};
  }

  // Calls visit(column, line, length, code, cell) for the cells of a slice across an axis: `length` cells from a column
  // on, in a line, both counted from the first coordinate.
  forEachInSlice(axis, coordinate, visit) {
    const ny = this.size[1];
    const at = coordinate - this.first[axis];
    if (at < 0 || at >= this.size[axis]) return;
    const visitRow = (row, line) => {
      for (let run = this.rowRuns[row]; run < this.rowRuns[row + 1]; ++run) {
        visit(this.starts[run], line, this.lengths[run], this.codes[run], this.cells[run]);
      }
    };
    if (axis === 2) {
      const end = (at + 1) * ny;
      for (let row = this.rowFrom(at * ny); row < this.rowNumbers.length && this.rowNumbers[row] < end; ++row) {
        visitRow(row, this.rowNumbers[row] - at * ny);
      }
      return;
    }
    for (let row = 0; row < this.rowNumbers.length; ++row) {
      const number = this.rowNumbers[row];
      const z = Math.floor(number / ny);
      const y = number - z * ny;
      if (axis === 1) {
        if (y === at) visitRow(row, z);
        continue;
      }
      const run = this.runAt(row, at);
      if (run >= this.rowRuns[row] && at < this.starts[run] + this.lengths[run]) {
        visit(y, z, 1, this.codes[run], this.cells[run] + at - this.starts[run]);
      }
    }
  }

  // Coordinates of a cell by its number.
  coordinatesOf(cell) {
    let low = 0;
    let high = this.runs;
    while (low < high) {
      const middle = (low + high) >>> 1;
      if (this.cells[middle] <= cell) low = middle + 1;
      else high = middle;
    }
    const run = low - 1;
    let row = 0;
    let end = this.rowNumbers.length;
    while (row < end) {
      const middle = (row + end) >>> 1;
      if (this.rowRuns[middle] <= run) row = middle + 1;
      else end = middle;
    }
    const number = this.rowNumbers[row - 1];
    const z = Math.floor(number / this.size[1]);
    return [this.first[0] + this.starts[run] + cell - this.cells[run], this.first[1] + number - z * this.size[1],
      this.first[2] + z];
  }
}

// Turns the blocks of the page, which are compressed and written in base64, into numbers.

function bytesOfText(text) {
  const binary = atob(text);
  const bytes = new Uint8Array(binary.length);
  for (let i = 0; i < bytes.length; ++i) bytes[i] = binary.charCodeAt(i);
  return bytes;
}

export async function inflate(text) {
  const stream = new Blob([bytesOfText(text)]).stream().pipeThrough(new DecompressionStream('deflate'));
  return new Uint8Array(await new Response(stream).arrayBuffer());
}

// Reads whole numbers of seven bits a byte, the lowest first. They may be beyond 32 bits.
export class VarintReader {
  constructor(bytes) {
    this.bytes = bytes;
    this.at = 0;
  }

  get ended() {
    return this.at >= this.bytes.length;
  }

  next() {
    let value = 0;
    let factor = 1;
    for (;;) {
      const byte = this.bytes[this.at++];
      value += (byte & 127) * factor;
      if (byte < 128) return value;
      factor *= 128;
    }
  }

  // Signed numbers alternate: 0, -1, 1, -2, 2.
  nextSigned() {
    const value = this.next();
    return value % 2 === 0 ? value / 2 : -(value + 1) / 2;
  }
}

// Numbers of the file's rows, each given by how far it is from where the two before it lead.
export function decodeRows(bytes, count) {
  const reader = new VarintReader(bytes);
  const rows = new Uint32Array(count);
  let last = 0;
  let step = 0;
  for (let i = 0; i < count; ++i) {
    step += reader.nextSigned();
    last += step;
    rows[i] = last;
  }
  return rows;
}

// A number for each cell, kept as a level: the index of a value in a list, or a part of the range. The four highest
// levels are for what is no such number.
export class Field {
  constructor(facts, bytes, values) {
    Object.assign(this, facts);
    const count = bytes.length / (this.bits / 8);
    if (this.bits === 8) {
      this.levels = bytes;
    } else {
      // Low bytes first, then high bytes, which so compress better.
      this.levels = new Uint16Array(count);
      for (let i = 0; i < count; ++i) this.levels[i] = bytes[i] | (bytes[count + i] << 8);
    }
    const top = 2 ** this.bits - 1;
    this.values = new Float64Array(top + 1).fill(NaN);
    for (let level = 0; level < this.steps; ++level) {
      const part = this.steps > 1 ? level / (this.steps - 1) : 0;
      this.values[level] = values ? values[level] : this.min * (1 - part) + this.max * part;
    }
    this.values[top - 2] = Infinity;
    this.values[top - 3] = -Infinity;
    this.missing = top;
    this.exact = Boolean(values);
  }

  has(cell) {
    return this.levels[cell] !== this.missing;
  }

  valueAt(cell) {
    return this.values[this.levels[cell]];
  }
}

export function decodeFloats(bytes, Type) {
  return new Type(bytes.buffer, bytes.byteOffset, bytes.byteLength / Type.BYTES_PER_ELEMENT);
}

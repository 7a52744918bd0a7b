import {sizedContext} from './plot.js';

const across = [[1, 2], [0, 2], [0, 1]];
const axisNames = 'xyz';
// Thin boxes are stretched along their short side, so that they can be seen: to so many pixels, if that takes no more
// than this factor.
const minShown = 90;
const maxStretch = 12;
const edge = {left: 40, right: 10, top: 10, bottom: 22};

// A slice across one axis on a canvas. `page` gives what is to be shown, and takes where the user points.
export class Slice {
  constructor(axis, canvas, page) {
    this.axis = axis;
    [this.h, this.v] = across[axis];
    this.canvas = canvas;
    this.page = page;
    this.zoom = 1;
    this.middle = null;
    canvas.tabIndex = 0;
    canvas.setAttribute('role', 'img');
    canvas.addEventListener('pointerdown', (event) => this.press(event));
    canvas.addEventListener('pointermove', (event) => this.move(event));
    canvas.addEventListener('pointerleave', () => page.hover(null));
    canvas.addEventListener('wheel', (event) => this.wheel(event), {passive: false});
    canvas.addEventListener('dblclick', () => this.reset());
    canvas.addEventListener('focus', () => page.activate(this));
  }

  get title() {
    return `${axisNames[this.h]}${axisNames[this.v]}`;
  }

  reset() {
    this.zoom = 1;
    this.middle = null;
    this.page.redraw();
  }

  // Gives the canvas the height that the slice takes at its width, up to a part of the window.
  fit(part) {
    const grid = this.page.grid;
    const width = this.canvas.clientWidth - edge.left - edge.right;
    const wanted = Math.max((width * grid.size[this.v]) / grid.size[this.h], minShown) + edge.top + edge.bottom;
    this.canvas.style.height = `${Math.round(Math.min(wanted, Math.max(innerHeight * part, 220)))}px`;
  }

  // How cells lie on the canvas: pixels of the page for a cell, and where the first one begins.
  measure() {
    const grid = this.page.grid;
    const [width, height] = [this.canvas.clientWidth, this.canvas.clientHeight];
    const [cellsH, cellsV] = [grid.size[this.h], grid.size[this.v]];
    const [roomH, roomV] = [width - edge.left - edge.right, height - edge.top - edge.bottom];
    const scale = Math.min(roomH / cellsH, roomV / cellsV);
    const stretched = (cells, room) => this.zoom
      * Math.max(scale, Math.min(minShown / cells, room / cells, scale * maxStretch));
    const scaleH = stretched(cellsH, roomH);
    const scaleV = stretched(cellsV, roomV);
    const middle = this.middle ?? [cellsH / 2, cellsV / 2];
    this.frame = {
      width, height, scaleH, scaleV,
      left: edge.left + roomH / 2 - middle[0] * scaleH,
      bottom: edge.top + roomV / 2 + middle[1] * scaleV,
    };
    return this.frame;
  }

  // The coordinates under a point of the canvas, which need not be in the box.
  coordinatesAt(px, py) {
    const {scaleH, scaleV, left, bottom} = this.measure();
    const cell = [...this.page.position];
    cell[this.h] = this.page.grid.first[this.h] + Math.floor((px - left) / scaleH);
    cell[this.v] = this.page.grid.first[this.v] + Math.floor((bottom - py) / scaleV);
    return cell;
  }

  // The middle of a cell on the canvas.
  pointOf(cell) {
    const {scaleH, scaleV, left, bottom} = this.measure();
    return [
      left + (cell[this.h] - this.page.grid.first[this.h] + 0.5) * scaleH,
      bottom - (cell[this.v] - this.page.grid.first[this.v] + 0.5) * scaleV,
    ];
  }

  press(event) {
    this.canvas.focus({preventScroll: true});
    if (event.button !== 0) return;
    this.canvas.setPointerCapture(event.pointerId);
    this.drag = event.shiftKey ? {x: event.offsetX, y: event.offsetY} : null;
    if (!this.drag) this.page.moveTo(this.coordinatesAt(event.offsetX, event.offsetY));
  }

  move(event) {
    const cell = this.coordinatesAt(event.offsetX, event.offsetY);
    if ((event.buttons & 1) !== 0) {
      if (this.drag) this.pan(event);
      else this.page.moveTo(cell);
    }
    this.page.hover(cell, event.clientX, event.clientY);
  }

  pan(event) {
    const grid = this.page.grid;
    const {scaleH, scaleV} = this.frame;
    const middle = this.middle ?? [grid.size[this.h] / 2, grid.size[this.v] / 2];
    this.middle = [
      middle[0] - (event.offsetX - this.drag.x) / scaleH,
      middle[1] + (event.offsetY - this.drag.y) / scaleV,
    ];
    this.drag = {x: event.offsetX, y: event.offsetY};
    this.page.redraw();
  }

  wheel(event) {
    if (event.ctrlKey || event.metaKey) {
      event.preventDefault();
      this.zoomAt(event.offsetX, event.offsetY, Math.exp(-event.deltaY / 200));
      return;
    }
    const step = Math.sign(event.deltaY || event.deltaX);
    // At the end the page may scroll on.
    if (step !== 0 && this.page.step(this.axis, -step)) event.preventDefault();
  }

  // Zooms so that what is under a point stays there.
  zoomAt(px, py, factor) {
    const {scaleH, scaleV, left, bottom, width, height} = this.measure();
    const zoom = Math.min(Math.max(this.zoom * factor, 1), 4000);
    const real = zoom / this.zoom;
    const at = [(px - left) / scaleH, (bottom - py) / scaleV];
    const roomMiddle = [(edge.left + width - edge.right) / 2, (edge.top + height - edge.bottom) / 2];
    this.middle = [
      at[0] + (roomMiddle[0] - px) / (scaleH * real),
      at[1] - (roomMiddle[1] - py) / (scaleV * real),
    ];
    this.zoom = zoom;
    if (zoom === 1) this.middle = null;
    this.page.redraw();
  }

  draw() {
    const {width, height} = this.measure();
    if (width === 0) return;
    const context = sizedContext(this.canvas, width, height);
    const {page} = this;
    const at = page.position;
    this.canvas.setAttribute('aria-label',
      `Slice ${this.title} at ${axisNames[this.axis]} = ${at[this.axis]}; pointer at ${at.join(', ')}`);
    this.drawCells(context);
    this.drawFrame(context);
    this.drawCross(context);
    for (const mark of page.marksIn(this.axis)) this.drawMark(context, mark);
  }

  drawCells(context) {
    const {page} = this;
    const {grid} = page;
    const ratio = this.canvas.width / this.frame.width;
    const [left, top, right, bottom] = [edge.left, edge.top, this.frame.width - edge.right,
      this.frame.height - edge.bottom].map((length) => Math.round(length * ratio));
    const image = context.createImageData(right - left, bottom - top);
    const pixels = new Uint32Array(image.data.buffer);
    const scaleH = this.frame.scaleH * ratio;
    const scaleV = this.frame.scaleV * ratio;
    const originH = this.frame.left * ratio - left;
    const originV = this.frame.bottom * ratio - top;
    const clampH = (value) => Math.min(Math.max(Math.round(value), 0), image.width);
    const clampV = (value) => Math.min(Math.max(Math.round(value), 0), image.height);
    const paint = (column, line, length, colour) => {
      // At least a pixel, so that few cells in a large box are seen.
      const x0 = Math.min(clampH(originH + column * scaleH), image.width - 1);
      const x1 = Math.max(clampH(originH + (column + length) * scaleH), x0 + 1);
      const y1 = Math.max(clampV(originV - line * scaleV), 1);
      const y0 = Math.min(clampV(originV - (line + 1) * scaleV), y1 - 1);
      for (let y = y0; y < y1; ++y) pixels.fill(colour, y * image.width + x0, y * image.width + x1);
    };
    // Where no cell is, the box is hatched.
    const [empty, hatch] = page.emptyPixels;
    const x0 = clampH(originH);
    const x1 = clampH(originH + grid.size[this.h] * scaleH);
    for (let y = clampV(originV - grid.size[this.v] * scaleV); y < clampV(originV); ++y) {
      pixels.fill(empty, y * image.width + x0, y * image.width + x1);
      for (let x = x0 + ((8 - ((x0 + y) % 8)) % 8); x < x1; x += 8) pixels[y * image.width + x] = hatch;
    }
    const first = Math.floor(-originH / scaleH);
    const last = Math.ceil((image.width - originH) / scaleH) - 1;
    const lowest = Math.floor((originV - image.height) / scaleV);
    const highest = Math.ceil(originV / scaleV) - 1;
    const {codeColours, levelColours, field} = page.shown;
    grid.forEachInSlice(this.axis, page.position[this.axis], (column, line, length, code, cell) => {
      if (line < lowest || line > highest || column > last || column + length <= first) return;
      const colour = codeColours[code];
      if (colour === 0) return;
      if (!field) {
        paint(column, line, length, colour);
        return;
      }
      const end = Math.min(length, last - column + 1);
      for (let i = Math.max(0, first - column); i < end; ++i) {
        paint(column + i, line, 1, levelColours[field.levels[cell + i]]);
      }
    });
    context.putImageData(image, left, top);
  }

  drawFrame(context) {
    const {page} = this;
    const {left, bottom, scaleH, scaleV, width, height} = this.frame;
    const {grid} = page;
    context.font = `11px ${page.font}`;
    context.fillStyle = page.mutedColour;
    const [firstH, firstV] = [grid.first[this.h], grid.first[this.v]];
    const lastH = firstH + grid.size[this.h] - 1;
    const lastV = firstV + grid.size[this.v] - 1;
    const [end, top] = [left + grid.size[this.h] * scaleH, bottom - grid.size[this.v] * scaleV];
    const clamp = (value, least, greatest) => Math.min(Math.max(value, least), greatest);
    const line = clamp(bottom + 14, 0, height - 6);
    context.textAlign = 'center';
    context.fillText(firstH, clamp(left + scaleH / 2, edge.left, width), line);
    if (lastH > firstH) context.fillText(lastH, clamp(end - scaleH / 2, 0, width - edge.right - 6), line);
    context.fillText(`${axisNames[this.h]} →`, clamp((left + end) / 2, edge.left + 30, width - 40), line);
    context.textAlign = 'right';
    const column = clamp(left - 6, 0, width);
    context.fillText(firstV, column, clamp(bottom - scaleV / 2 + 4, edge.top + 10, height - edge.bottom));
    if (lastV > firstV && bottom - top > 26) {
      context.fillText(lastV, column, clamp(top + scaleV / 2 + 4, edge.top + 10, height));
    }
    if (bottom - top > 50) context.fillText(`${axisNames[this.v]} ↑`, column, clamp((bottom + top) / 2, 20, height - 30));
  }

  drawCross(context) {
    const {page} = this;
    const [x, y] = this.pointOf(page.position);
    const {width, height, scaleH, scaleV} = this.frame;
    const {size} = page.grid;
    const half = Math.max(Math.min(scaleH, scaleV) / 2, 4);
    const left = Math.max(edge.left, this.frame.left);
    const right = Math.min(width - edge.right, this.frame.left + size[this.h] * scaleH);
    const top = Math.max(edge.top, this.frame.bottom - size[this.v] * scaleV);
    const bottom = Math.min(height - edge.bottom, this.frame.bottom);
    const lines = new Path2D();
    for (const [x0, y0, x1, y1] of [[left, y, x - half, y], [x + half, y, right, y], [x, top, x, y - half],
      [x, y + half, x, bottom]]) {
      if (x1 < x0 || y1 < y0 || x0 < left || x1 > right || y0 < top || y1 > bottom) continue;
      lines.moveTo(x0, y0);
      lines.lineTo(x1, y1);
    }
    context.lineWidth = 3;
    context.strokeStyle = page.dark ? '#0008' : '#fff9';
    context.stroke(lines);
    context.lineWidth = 1;
    context.strokeStyle = page.textColour;
    context.stroke(lines);
  }

  drawMark(context, mark) {
    const [x, y] = this.pointOf(mark.cell);
    const {width, height} = this.frame;
    if (x < edge.left || x > width - edge.right || y < edge.top || y > height - edge.bottom) return;
    const shape = new Path2D();
    // Those that come in crowds are no larger than their cells.
    const cell = Math.min(this.frame.scaleH, this.frame.scaleV) * 0.4;
    const size = {set: 2.5, piezo: Math.min(Math.max(cell, 1.2), 5)}[mark.kind] ?? 6.5;
    if (mark.kind === 'actuator' || mark.kind === 'max') {
      shape.moveTo(x, y - size);
      shape.lineTo(x + size, y + size * 0.8);
      shape.lineTo(x - size, y + size * 0.8);
    } else if (mark.kind === 'min') {
      shape.moveTo(x, y + size);
      shape.lineTo(x + size, y - size * 0.8);
      shape.lineTo(x - size, y - size * 0.8);
    } else if (mark.kind === 'piezo') {
      shape.rect(x - size, y - size, 2 * size, 2 * size);
    } else {
      shape.arc(x, y, size, 0, 2 * Math.PI);
    }
    shape.closePath();
    context.fillStyle = mark.kind === 'sensor' ? '#ffffff' : '#000000';
    context.strokeStyle = mark.kind === 'sensor' ? '#000000' : '#ffffff';
    context.lineWidth = mark.kind === 'set' ? 1 : mark.kind === 'piezo' ? Math.min(cell * 0.4, 1.6) : 1.6;
    context.fill(shape);
    context.stroke(shape);
  }
}

import {numberText, ticks} from './text.js';

const margin = {left: 58, right: 12, top: 10, bottom: 34};

function style(name) {
  return getComputedStyle(document.documentElement).getPropertyValue(name).trim();
}

// A canvas with as many pixels as the screen has for it.
export function sizedContext(canvas, width, height) {
  const ratio = window.devicePixelRatio || 1;
  canvas.width = Math.max(1, Math.round(width * ratio));
  canvas.height = Math.max(1, Math.round(height * ratio));
  const context = canvas.getContext('2d');
  context.scale(ratio, ratio);
  context.clearRect(0, 0, width, height);
  return context;
}

function drawAxes(context, width, height, x, y, labels) {
  context.font = `11px ${style('--font')}`;
  context.strokeStyle = style('--line');
  context.fillStyle = style('--muted');
  context.lineWidth = 1;
  context.textAlign = 'center';
  context.beginPath();
  for (const tick of ticks(...x.range, Math.max(2, width / 110))) {
    context.moveTo(x.at(tick), margin.top);
    context.lineTo(x.at(tick), height - margin.bottom);
    context.fillText(numberText(tick, 4), x.at(tick), height - margin.bottom + 14);
  }
  context.textAlign = 'right';
  for (const tick of ticks(...y.range, 4)) {
    context.moveTo(margin.left, y.at(tick));
    context.lineTo(width - margin.right, y.at(tick));
    context.fillText(numberText(tick, 3), margin.left - 6, y.at(tick) + 4);
  }
  context.stroke();
  context.textAlign = 'center';
  context.fillText(labels.x, (margin.left + width - margin.right) / 2, height - 4);
}

function scales(width, height, rangeX, rangeY) {
  const right = width - margin.right;
  const bottom = height - margin.bottom;
  const spanX = rangeX[1] - rangeX[0] || 1;
  const spanY = rangeY[1] - rangeY[0] || 1;
  return [
    {range: rangeX, at: (value) => margin.left + ((value - rangeX[0]) / spanX) * (right - margin.left)},
    {range: rangeY, at: (value) => bottom - ((value - rangeY[0]) / spanY) * (bottom - margin.top)},
  ];
}

// Draws y over x as a line; of very many points the least and the greatest of each column of pixels.
export function drawLine(canvas, xs, ys, limit, label, colour) {
  const width = canvas.clientWidth || 300;
  const height = 150;
  canvas.style.height = `${height}px`;
  const context = sizedContext(canvas, width, height);
  let least = Infinity;
  let greatest = -Infinity;
  for (const value of ys) {
    if (value < least) least = value;
    if (value > greatest) greatest = value;
  }
  if (!(greatest > least)) [least, greatest] = [least - 1, greatest + 1];
  const end = limit ?? xs[xs.length - 1];
  const [x, y] = scales(width, height, [xs[0] ?? 0, end > xs[0] ? end : xs[0] + 1], [least, greatest]);
  drawAxes(context, width, height, x, y, {x: label});
  context.strokeStyle = style(colour);
  context.lineWidth = 1.5;
  context.lineJoin = 'round';
  context.beginPath();
  let column = -1;
  let low = 0;
  let high = 0;
  for (let i = 0; i < xs.length && xs[i] <= end; ++i) {
    const here = Math.floor(x.at(xs[i]) * 2);
    if (here !== column) {
      column = here;
      low = high = ys[i];
      context.lineTo(x.at(xs[i]), y.at(ys[i]));
    } else if (ys[i] < low || ys[i] > high) {
      low = Math.min(low, ys[i]);
      high = Math.max(high, ys[i]);
      context.lineTo(x.at(xs[i]), y.at(ys[i]));
    }
  }
  context.stroke();
}

// Draws counts as bars from the least to the greatest value.
export function drawBars(canvas, counts, range, label) {
  const width = canvas.clientWidth || 300;
  const height = 130;
  canvas.style.height = `${height}px`;
  const context = sizedContext(canvas, width, height);
  const max = Math.max(1, ...counts);
  const [x, y] = scales(width, height, range[1] > range[0] ? range : [range[0] - 1, range[0] + 1], [0, max]);
  drawAxes(context, width, height, x, y, {x: label});
  context.fillStyle = style('--accent');
  const step = (width - margin.left - margin.right) / counts.length;
  counts.forEach((count, i) => {
    const top = y.at(count);
    context.fillRect(margin.left + i * step, top, Math.max(1, step - 1), height - margin.bottom - top);
  });
}

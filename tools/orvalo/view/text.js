// What people are shown of numbers, and elements to show it in. Names come from files, so text never becomes markup.

export function element(tag, properties = {}, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(properties)) {
    if (name === 'class') made.className = value;
    else if (name.startsWith('on')) made.addEventListener(name.slice(2), value);
    else if (name in made && name !== 'list') made[name] = value;
    else made.setAttribute(name, value);
  }
  for (const child of children) made.append(child);
  return made;
}

export function numberText(value, digits = 6) {
  if (!Number.isFinite(value)) return Number.isNaN(value) ? 'no number' : value > 0 ? '∞' : '−∞';
  return String(Number(value.toPrecision(digits))).replace('-', '−');
}

export function countText(count) {
  return count.toLocaleString('en');
}

export function cellText(cell) {
  return `(${cell.join(', ')})`.replaceAll('-', '−');
}

// Round numbers within a range, about as many as asked for.
export function ticks(least, greatest, count) {
  const span = greatest - least;
  if (!(span > 0) || !Number.isFinite(span)) return [least];
  const rough = span / count;
  const power = 10 ** Math.floor(Math.log10(rough));
  const step = [1, 2, 5, 10].find((factor) => factor * power >= rough) * power;
  const found = [];
  for (let i = Math.ceil(least / step - 1e-9); i * step <= greatest + step * 1e-9; ++i) found.push(i * step);
  return found;
}

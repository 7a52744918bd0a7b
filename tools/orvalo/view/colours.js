// Colours that those who confuse some can tell apart.

// Okabe and Ito's, then Paul Tol's muted ones: neighbours differ in lightness too.
const materialColours = [
  [0, 114, 178], [230, 159, 0], [0, 158, 115], [204, 121, 167], [86, 180, 233], [213, 94, 0], [240, 228, 66],
  [136, 34, 85], [51, 34, 136], [153, 153, 51], [17, 119, 51], [170, 68, 153], [136, 204, 238], [221, 204, 119],
];

export function materialColour(index, damping) {
  const base = materialColours[index % materialColours.length];
  // Further rounds are darker, cells of damping alone lighter.
  const round = Math.floor(index / materialColours.length);
  const darker = base.map((part) => part * 0.72 ** round);
  return darker.map((part) => Math.round(damping ? part * 0.45 + 140 : part));
}

const maps = {
  // Cividis, at equal distances.
  sequential: [[0, 34, 78], [35, 62, 108], [87, 93, 109], [124, 123, 120], [166, 157, 117], [211, 193, 100], [254, 232, 56]],
  // Blue and orange about a neutral middle.
  divergingLight: [[5, 48, 97], [33, 102, 172], [103, 169, 207], [246, 246, 244], [253, 174, 97], [214, 96, 20], [127, 39, 4]],
  divergingDark: [[158, 212, 255], [78, 156, 230], [48, 98, 152], [66, 70, 78], [156, 92, 36], [230, 140, 40], [255, 214, 140]],
};

function interpolate(stops, part) {
  const place = Math.min(Math.max(part, 0), 1) * (stops.length - 1);
  const below = Math.min(Math.floor(place), stops.length - 2);
  return stops[below].map((value, i) => Math.round(value + (stops[below + 1][i] - value) * (place - below)));
}

export const notANumberColour = [160, 32, 160];

// The colour of a value in a range.
export function mapColour(kind, dark, value, range) {
  if (Number.isNaN(value)) return notANumberColour;
  const stops = maps[kind === 'diverging' ? (dark ? 'divergingDark' : 'divergingLight') : 'sequential'];
  const [least, greatest] = range;
  if (value === Infinity || value === -Infinity) return interpolate(stops, value > 0 ? 1 : 0);
  return interpolate(stops, greatest > least ? (value - least) / (greatest - least) : 0.5);
}

// A pixel as it lies in image data on a little-endian machine, as all that run browsers are.
export function pixelOf([red, green, blue]) {
  return ((255 << 24) | (blue << 16) | (green << 8) | red) >>> 0;
}

// The Fourier transform of a signal, filled up with zeros to a power of two: real and imaginary parts, in place.
function transform(real, imaginary) {
  const count = real.length;
  for (let i = 1, j = 0; i < count; ++i) {
    let bit = count >> 1;
    for (; j & bit; bit >>= 1) j ^= bit;
    j ^= bit;
    if (i < j) {
      [real[i], real[j]] = [real[j], real[i]];
      [imaginary[i], imaginary[j]] = [imaginary[j], imaginary[i]];
    }
  }
  for (let length = 2; length <= count; length *= 2) {
    const half = length / 2;
    for (let k = 0; k < half; ++k) {
      const angle = (-2 * Math.PI * k) / length;
      const [cos, sin] = [Math.cos(angle), Math.sin(angle)];
      for (let i = k; i < count; i += length) {
        const j = i + half;
        const re = real[j] * cos - imaginary[j] * sin;
        const im = real[j] * sin + imaginary[j] * cos;
        real[j] = real[i] - re;
        imaginary[j] = imaginary[i] - im;
        real[i] += re;
        imaginary[i] += im;
      }
    }
  }
}

// Frequencies in kilohertz, and the magnitude at each, of samples that are `step` microseconds apart.
export function spectrum(samples, step) {
  const count = 2 ** Math.ceil(Math.log2(Math.max(samples.length * 4, 64)));
  const real = new Float64Array(count);
  const imaginary = new Float64Array(count);
  real.set(samples);
  transform(real, imaginary);
  const half = count / 2 + 1;
  const frequencies = new Float64Array(half);
  const magnitudes = new Float64Array(half);
  for (let i = 0; i < half; ++i) {
    frequencies[i] = (i * 1000) / (count * step);
    magnitudes[i] = Math.hypot(real[i], imaginary[i]) * step;
  }
  return {frequencies, magnitudes};
}

// Up to which frequency a spectrum is worth showing.
export function usefulLimit({frequencies, magnitudes}) {
  const max = magnitudes.reduce((a, b) => Math.max(a, b), 0);
  let last = magnitudes.length - 1;
  while (last > 8 && magnitudes[last] < max * 0.01) --last;
  return frequencies[Math.min(Math.ceil(last * 1.25), frequencies.length - 1)];
}

// The pages the browser tests look at, made by the real executable from WAV files written here: a
// stereo analyze report with failures, snapshots, deepscan and impulse cards; a plot page; an
// ERROR page (a DUT at a different sample rate); and plot pages of a three-frame file and of a
// one-frame file above full scale, whose outlines are small enough to check point by point.
import { spawnSync } from 'node:child_process';
import { existsSync, mkdirSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { wavBytes } from './wav.mjs';

const SAMPLE_RATE = 48000;
const SECONDS = 4;
const DUT_DELAY = 120; // frames the DUT lags the reference

// A fixed-seed generator, so every run writes the same files.
function noiseSource(seed) {
  let state = seed >>> 0;
  return () => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return state / 4294967296 - 0.5;
  };
}

// Tones at 220, 1000 and 5000 Hz with a slow swell, plus a little noise so the alignment has one
// clear correlation peak.
function referenceChannel(frames, channel) {
  const noise = noiseSource(17 + channel);
  const data = new Float64Array(frames);
  for (let n = 0; n < frames; n++) {
    const t = n / SAMPLE_RATE;
    const swell = 0.55 + 0.45 * Math.sin(2 * Math.PI * 0.4 * t + channel);
    data[n] = swell * (0.25 * Math.sin(2 * Math.PI * 220 * t) +
      0.15 * Math.sin(2 * Math.PI * 1000 * t + channel) +
      0.08 * Math.sin(2 * Math.PI * 5000 * t)) + 0.02 * noise();
  }
  return data;
}

// The reference delayed by DUT_DELAY frames, 1.5 dB quieter in its second half, with a burst of
// clicks on the left channel: level fidelity, artifacts and the spectrum all fail.
function dutChannel(reference, channel) {
  const data = new Float64Array(reference.length);
  for (let n = DUT_DELAY; n < reference.length; n++) {
    const gain = n > reference.length / 2 ? Math.pow(10, -1.5 / 20) : 1;
    data[n] = reference[n - DUT_DELAY] * gain;
  }
  for (let k = 0; channel === 0 && k < 40; k++) data[SAMPLE_RATE + k * 37] += 0.6;
  return data;
}

function writeWav(path, channels, sampleRate, options) {
  writeFileSync(path, wavBytes(channels, sampleRate, options));
  return path;
}

// Runs sonalyx, which must end with `expectedStatus` and leave the page `output` behind.
function runSonalyx(exe, args, expectedStatus, output) {
  const run = spawnSync(exe, args, { encoding: 'utf8' });
  const command = `sonalyx ${args.join(' ')}`;
  if (run.error) throw new Error(`${command}: ${run.error.message}`);
  if (run.status !== expectedStatus) {
    throw new Error(`${command} exited ${run.status}, expected ${expectedStatus}:\n${run.stderr}`);
  }
  if (!existsSync(output)) throw new Error(`${command} did not write ${output}`);
}

// Writes the fixtures into `outDir`/fixtures and the pages beside them; returns the page paths.
export function makePages(exe, outDir) {
  const dir = join(outDir, 'fixtures');
  mkdirSync(dir, { recursive: true });
  const frames = SAMPLE_RATE * SECONDS;
  const reference = [referenceChannel(frames, 0), referenceChannel(frames, 1)];
  const dut = reference.map(dutChannel);
  const refPath = writeWav(join(dir, 'reference.wav'), reference, SAMPLE_RATE);
  const dutPath = writeWav(join(dir, 'dut.wav'), dut, SAMPLE_RATE);
  const otherRatePath = writeWav(join(dir, 'dut-44k.wav'), reference, 44100);
  const threeFramesPath = writeWav(join(dir, 'three-frames.wav'), [Float64Array.of(0.5, -0.25, 0.75)], SAMPLE_RATE, { float: true });
  const overScalePath = writeWav(join(dir, 'over-scale.wav'), [Float64Array.of(1.5)], SAMPLE_RATE, { float: true });
  const pages = {
    analyze: join(outDir, 'analyze.html'),
    plot: join(outDir, 'plot.html'),
    error: join(outDir, 'error.html'),
    threeFrames: join(outDir, 'plot-three-frames.html'),
    overScale: join(outDir, 'plot-over-scale.html')
  };
  for (const path of Object.values(pages)) rmSync(path, { force: true });
  runSonalyx(exe, ['analyze', '--ref', refPath, '--dut', dutPath, '--out', pages.analyze,
    '--snapshots', '3', '--deepscan', '--impulse', '--quiet'], 0, pages.analyze);
  runSonalyx(exe, ['plot', '--input', refPath, '--out', pages.plot], 0, pages.plot);
  runSonalyx(exe, ['plot', '--input', threeFramesPath, '--out', pages.threeFrames], 0, pages.threeFrames);
  runSonalyx(exe, ['plot', '--input', overScalePath, '--out', pages.overScale], 0, pages.overScale);
  runSonalyx(exe, ['analyze', '--ref', refPath, '--dut', otherRatePath, '--out', pages.error,
    '--quiet'], 1, pages.error);
  return pages;
}

// The batch index page: four pairs analyzed by the real executable (one passing, two failing by
// different amounts, one that cannot be compared) and the index written over their results. The
// page loads quietly in both themes, its table sorts by each kind of column and filters by verdict
// and text, and every link names a report that was written.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { existsSync, mkdirSync, rmSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { assertQuiet, openPage, screenshots } from './harness.mjs';
import { wavBytes } from './wav.mjs';

const SAMPLE_RATE = 48000;

function noise(frames, seed) {
  let state = seed >>> 0;
  const data = new Float64Array(frames);
  for (let n = 0; n < frames; n++) {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    data[n] = 0.4 * (state / 4294967296 - 0.5) + 0.2 * Math.sin(2 * Math.PI * 440 * n / SAMPLE_RATE);
  }
  return data;
}

function scaled(data, gain) {
  return data.map((value) => value * gain);
}

function run(program, args, expectedStatus) {
  const result = spawnSync(program, args, { encoding: 'utf8' });
  if (result.error) throw new Error(`${program}: ${result.error.message}`);
  if (result.status !== expectedStatus) {
    throw new Error(`${program} ${args.join(' ')} exited ${result.status}:\n${result.stderr}`);
  }
}

// The pairs by id: the DUT's gain against the reference (null: a DUT at another sample rate) and
// the seconds the index is given for the pair.
const PAIRS = [
  { id: 'alpha', gain: 1, seconds: 1.5, verdict: 'PASS' },
  { id: 'bravo', gain: 0.5, seconds: 0.5, verdict: 'FAIL' },
  { id: 'charlie', gain: 0.8, seconds: 2.5, verdict: 'FAIL' },
  { id: 'delta', gain: null, seconds: 0.25, verdict: 'ERROR' }
];

// Writes the pairs, their reports and the index into `outDir`/batch; returns the index path.
export function makeBatchIndex(exe, indexWriter, outDir) {
  const dir = join(outDir, 'batch');
  rmSync(dir, { recursive: true, force: true });
  mkdirSync(dir, { recursive: true });
  const reference = noise(SAMPLE_RATE, 5);
  const refPath = join(dir, 'reference.wav');
  writeFileSync(refPath, wavBytes([reference], SAMPLE_RATE));
  for (const pair of PAIRS) {
    const dutPath = join(dir, `${pair.id}-dut.wav`);
    const rate = pair.gain === null ? 44100 : SAMPLE_RATE;
    writeFileSync(dutPath, wavBytes([scaled(reference, pair.gain ?? 1)], rate));
    run(exe, ['analyze', '--ref', refPath, '--dut', dutPath, '--out', join(dir, `${pair.id}.html`),
      '--json', '--quiet'], pair.gain === null ? 1 : 0);
  }
  run(indexWriter, [dir, ...PAIRS.map((pair) => `${pair.id}=${pair.seconds}`)], 0);
  return join(dir, 'index.html');
}

async function shownIds(page) {
  return page.locator('#batch-table tbody tr:not([hidden]) td:first-child').allTextContents();
}

async function sortBy(page, label) {
  await page.locator('#batch-table thead th button', { hasText: label }).click();
}

async function testLoadsQuietly(browser, indexPath, outDir) {
  for (const colorScheme of ['light', 'dark']) {
    const { context, page, problems } = await openPage(browser, indexPath, { colorScheme });
    await page.screenshot({ path: join(outDir, `page-batch-index-${colorScheme}.png`), fullPage: true });
    assertQuiet(problems);
    await context.close();
  }
}

async function testCounts(browser, indexPath) {
  const { context, page, problems } = await openPage(browser, indexPath);
  assert.equal(await page.locator('#batch-verdict-tile .v').textContent(), 'FAIL');
  assert.equal(await page.locator('#count-pass .v').textContent(), '1');
  assert.equal(await page.locator('#count-fail .v').textContent(), '2');
  assert.equal(await page.locator('#count-error .v').textContent(), '1');
  assert.equal(await page.locator('#batch-total').textContent(), '4 pairs in 4.8 s');
  const verdicts = await page.locator('#batch-table tbody tr').evaluateAll((rows) =>
    rows.map((row) => [row.cells[0].textContent, row.getAttribute('data-verdict')]));
  assert.deepEqual(verdicts, PAIRS.map((pair) => [pair.id, pair.verdict]));
  assertQuiet(problems);
  await context.close();
}

// Numbers sort by value, both ways; a pair without the figure stays last either way; text sorts
// alphabetically.
async function testSorting(browser, indexPath, outDir) {
  const { context, page, problems } = await openPage(browser, indexPath);
  await sortBy(page, 'Time (s)');
  assert.deepEqual(await shownIds(page), ['delta', 'bravo', 'alpha', 'charlie']);
  await sortBy(page, 'Time (s)');
  assert.deepEqual(await shownIds(page), ['charlie', 'alpha', 'bravo', 'delta']);
  assert.equal(await page.locator('#batch-table th', { hasText: 'Time (s)' }).getAttribute('aria-sort'),
    'descending');
  await sortBy(page, 'Level p99');
  assert.deepEqual(await shownIds(page), ['alpha', 'charlie', 'bravo', 'delta']);
  await sortBy(page, 'Level p99');
  assert.deepEqual(await shownIds(page), ['bravo', 'charlie', 'alpha', 'delta']);
  await sortBy(page, 'ID');
  assert.deepEqual(await shownIds(page), ['alpha', 'bravo', 'charlie', 'delta']);
  await sortBy(page, 'Verdict');
  assert.deepEqual(await shownIds(page), ['delta', 'bravo', 'charlie', 'alpha']);
  await screenshots(page, outDir, 'batch-sorted', page.locator('#batch-pairs'));
  assertQuiet(problems);
  await context.close();
}

async function testFiltering(browser, indexPath) {
  const { context, page, problems } = await openPage(browser, indexPath);
  assert.equal(await page.locator('#batch-shown').textContent(), '4 of 4 pairs shown');
  await page.selectOption('#batch-verdict', 'FAIL');
  assert.deepEqual(await shownIds(page), ['bravo', 'charlie']);
  assert.equal(await page.locator('#batch-shown').textContent(), '2 of 4 pairs shown');
  await page.fill('#batch-filter', 'CHAR');
  assert.deepEqual(await shownIds(page), ['charlie']);
  await page.selectOption('#batch-verdict', '');
  await page.fill('#batch-filter', 'level fidelity');
  assert.deepEqual(await shownIds(page), ['bravo', 'charlie']);
  await page.fill('#batch-filter', 'sample rate');
  assert.deepEqual(await shownIds(page), ['delta']);
  await page.fill('#batch-filter', '');
  assert.equal((await shownIds(page)).length, 4);
  assertQuiet(problems);
  await context.close();
}

// Every pair links its own report, which exists beside the index.
async function testLinks(browser, indexPath) {
  const { context, page, problems } = await openPage(browser, indexPath);
  const links = await page.locator('#batch-table tbody a').evaluateAll((anchors) =>
    anchors.map((anchor) => anchor.getAttribute('href')));
  assert.deepEqual(links, PAIRS.map((pair) => `${pair.id}.html`));
  for (const link of links) {
    const target = join(dirname(indexPath), decodeURIComponent(link));
    assert.ok(existsSync(target), `${link} was not written`);
  }
  assertQuiet(problems);
  await context.close();
}

export async function batchTests(runner, browser, indexPath, outDir) {
  await runner.test('the batch index loads without console output, errors or requests',
    () => testLoadsQuietly(browser, indexPath, outDir));
  await runner.test('the batch index counts the verdicts and lists the pairs in order',
    () => testCounts(browser, indexPath));
  await runner.test('the batch table sorts numbers, texts and unset figures',
    () => testSorting(browser, indexPath, outDir));
  await runner.test('the batch table filters by verdict and text', () => testFiltering(browser, indexPath));
  await runner.test('every batch link names a written report', () => testLinks(browser, indexPath));
}

// Browser tests of the pages sonalyx writes:
//   node tests/browser/run.mjs <sonalyx-exe> <out-dir> <batch-index-writer>
// Makes the fixtures and pages in <out-dir> (the batch index with the test program
// tests/browser/batch_index_writer.cpp, built beside the tests), checks them in headless
// Chromium, saves screenshots there, and exits 1 when any test failed.
import { mkdirSync } from 'node:fs';
import { resolve } from 'node:path';
import { makePages } from './fixtures.mjs';
import { batchTests, makeBatchIndex } from './batch.mjs';
import { createRunner, launchBrowser } from './harness.mjs';
import { chartTests } from './charts.mjs';
import { pageTests } from './pages.mjs';
import { themeTests } from './theme.mjs';
import { traceTests } from './traces.mjs';

async function main(argv) {
  if (argv.length !== 3) {
    console.error('usage: node tests/browser/run.mjs <sonalyx-exe> <out-dir> <batch-index-writer>');
    return 1;
  }
  const exe = resolve(argv[0]);
  const outDir = resolve(argv[1]);
  const indexWriter = resolve(argv[2]);
  mkdirSync(outDir, { recursive: true });
  const runner = createRunner();
  let pages = null;
  await runner.test('sonalyx writes the analyze, plot and ERROR pages', () => {
    pages = makePages(exe, outDir);
  });
  let batchIndex = null;
  await runner.test('sonalyx writes the pages of a batch and the index over them', () => {
    batchIndex = makeBatchIndex(exe, indexWriter, outDir);
  });
  if (pages === null || batchIndex === null) return runner.finish() ? 0 : 1;
  const browser = await launchBrowser();
  try {
    await pageTests(runner, browser, pages, outDir);
    await themeTests(runner, browser, pages, outDir);
    await chartTests(runner, browser, pages, outDir);
    await traceTests(runner, browser, pages);
    await batchTests(runner, browser, batchIndex, outDir);
  } finally {
    await browser.close();
  }
  return runner.finish() ? 0 : 1;
}

process.exitCode = await main(process.argv.slice(2));

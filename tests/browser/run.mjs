// Browser tests of the pages sonalyx writes:
//   node tests/browser/run.mjs <sonalyx-exe> <out-dir>
// Makes the fixtures and pages in <out-dir>, checks them in headless Chromium, saves screenshots
// there, and exits 1 when any test failed.
import { mkdirSync } from 'node:fs';
import { resolve } from 'node:path';
import { makePages } from './fixtures.mjs';
import { createRunner, launchBrowser } from './harness.mjs';
import { chartTests } from './charts.mjs';
import { pageTests } from './pages.mjs';
import { themeTests } from './theme.mjs';
import { traceTests } from './traces.mjs';

async function main(argv) {
  if (argv.length !== 2) {
    console.error('usage: node tests/browser/run.mjs <sonalyx-exe> <out-dir>');
    return 1;
  }
  const exe = resolve(argv[0]);
  const outDir = resolve(argv[1]);
  mkdirSync(outDir, { recursive: true });
  const runner = createRunner();
  let pages = null;
  await runner.test('sonalyx writes the analyze, plot and ERROR pages', () => {
    pages = makePages(exe, outDir);
  });
  if (pages === null) return runner.finish() ? 0 : 1;
  const browser = await launchBrowser();
  try {
    await pageTests(runner, browser, pages, outDir);
    await themeTests(runner, browser, pages, outDir);
    await chartTests(runner, browser, pages, outDir);
    await traceTests(runner, browser, pages);
  } finally {
    await browser.close();
  }
  return runner.finish() ? 0 : 1;
}

process.exitCode = await main(process.argv.slice(2));

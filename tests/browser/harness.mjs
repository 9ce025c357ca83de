// What every browser test shares: the browser, pages opened with watchers for console messages,
// script errors and network requests, light and dark screenshots, and a small test runner that
// ends with an "N passed, N failed" line.
import { chromium } from 'playwright-core';
import { pathToFileURL } from 'node:url';
import { join } from 'node:path';

export const STORAGE_KEY = 'sonalyx-report-theme';

// Debian's Chromium, kept off the network: no background, component or sync traffic.
const CHROMIUM_ARGS = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync'];

export function launchBrowser() {
  return chromium.launch({ executablePath: '/usr/bin/chromium', headless: true, args: CHROMIUM_ARGS });
}

// Opens `path` in a fresh context. `colorScheme` is the system preference the page sees; `saved`
// (when given) is put in local storage under the theme key before any page script runs. Every
// console message, script error and request other than the page itself is collected in
// `problems`.
export async function openPage(browser, path, { colorScheme = 'light', saved } = {}) {
  const context = await browser.newContext({ colorScheme, viewport: { width: 1280, height: 900 } });
  if (saved !== undefined) {
    await context.addInitScript(([key, value]) => window.localStorage.setItem(key, value),
      [STORAGE_KEY, saved]);
  }
  const page = await context.newPage();
  const url = pathToFileURL(path).href;
  const problems = [];
  page.on('console', (message) => problems.push(`console ${message.type()}: ${message.text()}`));
  page.on('pageerror', (error) => problems.push(`script error: ${error.message}`));
  page.on('request', (request) => {
    if (request.url() !== url) problems.push(`request: ${request.url()}`);
  });
  await page.goto(url);
  return { context, page, problems };
}

// Fails when the page logged anything, threw, or asked the network for anything.
export function assertQuiet(problems) {
  if (problems.length > 0) throw new Error(`page was not quiet:\n  ${problems.join('\n  ')}`);
}

// Saves `<name>-light.png` and `<name>-dark.png` of `target` (a locator, or the page's viewport),
// switching the root's data-theme for the shots and restoring it afterwards.
export async function screenshots(page, outDir, name, target) {
  const original = await page.evaluate(() => document.documentElement.getAttribute('data-theme'));
  for (const theme of ['light', 'dark']) {
    await page.evaluate((value) => document.documentElement.setAttribute('data-theme', value), theme);
    const path = join(outDir, `${name}-${theme}.png`);
    await (target ? target.screenshot({ path }) : page.screenshot({ path }));
  }
  await page.evaluate((value) => {
    if (value === null) document.documentElement.removeAttribute('data-theme');
    else document.documentElement.setAttribute('data-theme', value);
  }, original);
}

// Runs named async tests one after another and reports each, then the totals.
export function createRunner() {
  const failures = [];
  let passed = 0;
  return {
    async test(name, body) {
      try {
        await body();
        passed++;
        console.log(`ok - ${name}`);
      } catch (error) {
        failures.push(name);
        console.log(`FAIL - ${name}\n${String(error && error.stack ? error.stack : error)}`);
      }
    },
    finish() {
      console.log(`${passed} passed, ${failures.length} failed`);
      return failures.length === 0;
    }
  };
}

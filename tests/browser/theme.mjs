// The theme rules on the real pages: a saved choice beats the system preference, an unknown saved
// value is ignored, the toggle's label and icon follow the effective theme, a click switches and
// saves, and a system change moves the button only while nothing is saved.
import assert from 'node:assert/strict';
import { STORAGE_KEY, assertQuiet, openPage, screenshots } from './harness.mjs';

const LIGHT_BACKGROUND = 'rgb(238, 241, 244)'; // --bg of the light theme
const DARK_BACKGROUND = 'rgb(14, 19, 24)';     // --bg of the dark theme

// What the page shows: the root's data-theme, the body colour, the button's label and which icon
// is visible.
async function themeState(page) {
  return page.evaluate(() => {
    const button = document.getElementById('themeToggle');
    const visible = (selector) => getComputedStyle(button.querySelector(selector)).display !== 'none';
    return {
      attribute: document.documentElement.getAttribute('data-theme'),
      background: getComputedStyle(document.body).backgroundColor,
      label: button.getAttribute('aria-label'),
      sun: visible('.ti-sun'),
      moon: visible('.ti-moon')
    };
  });
}

function assertLooksDark(state) {
  assert.equal(state.background, DARK_BACKGROUND);
  assert.equal(state.label, 'Switch to light theme');
  assert.deepEqual([state.sun, state.moon], [true, false]);
}

function assertLooksLight(state) {
  assert.equal(state.background, LIGHT_BACKGROUND);
  assert.equal(state.label, 'Switch to dark theme');
  assert.deepEqual([state.sun, state.moon], [false, true]);
}

function savedTheme(page) {
  return page.evaluate((key) => window.localStorage.getItem(key), STORAGE_KEY);
}

async function testSavedDarkBeatsLightSystem(browser, pages, outDir) {
  for (const path of [pages.analyze, pages.plot, pages.error]) {
    const { context, page, problems } = await openPage(browser, path, { colorScheme: 'light', saved: 'dark' });
    const state = await themeState(page);
    assert.equal(state.attribute, 'dark');
    assertLooksDark(state);
    assertQuiet(problems);
    await context.close();
  }
  const { context, page } = await openPage(browser, pages.analyze, { colorScheme: 'light', saved: 'dark' });
  await page.screenshot({ path: `${outDir}/theme-saved-dark.png` });
  await context.close();
}

async function testUnknownSavedValueIgnored(browser, pages, outDir) {
  for (const [colorScheme, assertLooks] of [['light', assertLooksLight], ['dark', assertLooksDark]]) {
    const { context, page, problems } = await openPage(browser, pages.analyze, { colorScheme, saved: 'sepia' });
    const state = await themeState(page);
    assert.equal(state.attribute, null);
    assertLooks(state);
    await page.screenshot({ path: `${outDir}/theme-unknown-saved-system-${colorScheme}.png` });
    assertQuiet(problems);
    await context.close();
  }
}

async function testToggleSwitchesAndSaves(browser, pages, outDir) {
  const { context, page, problems } = await openPage(browser, pages.plot, { colorScheme: 'light' });
  assertLooksLight(await themeState(page));
  assert.equal(await savedTheme(page), null);
  await page.locator('#themeToggle').click();
  const dark = await themeState(page);
  assert.equal(dark.attribute, 'dark');
  assertLooksDark(dark);
  assert.equal(await savedTheme(page), 'dark');
  await screenshots(page, outDir, 'theme-toggle-button', page.locator('.topbar'));
  await page.reload();
  assertLooksDark(await themeState(page));
  await page.locator('#themeToggle').click();
  const light = await themeState(page);
  assert.equal(light.attribute, 'light');
  assertLooksLight(light);
  assert.equal(await savedTheme(page), 'light');
  assertQuiet(problems);
  await context.close();
}

// The media query's change event reaches the page after the emulation call returns.
async function emulateColorScheme(page, colorScheme) {
  await page.emulateMedia({ colorScheme });
  await page.waitForFunction((dark) => window.matchMedia('(prefers-color-scheme: dark)').matches === dark,
    colorScheme === 'dark');
  await page.evaluate(() => new Promise((resolve) => setTimeout(resolve, 50)));
}

async function testSystemChangeOnlyWhileUnsaved(browser, pages) {
  const { context, page, problems } = await openPage(browser, pages.error, { colorScheme: 'light' });
  assertLooksLight(await themeState(page));
  await emulateColorScheme(page, 'dark');
  assertLooksDark(await themeState(page));
  await page.locator('#themeToggle').click();
  assertLooksLight(await themeState(page));
  await emulateColorScheme(page, 'light');
  await emulateColorScheme(page, 'dark');
  const state = await themeState(page);
  assert.equal(state.attribute, 'light');
  assertLooksLight(state);
  assertQuiet(problems);
  await context.close();
}

export async function themeTests(runner, browser, pages, outDir) {
  await runner.test('saved dark beats a light system preference', () => testSavedDarkBeatsLightSystem(browser, pages, outDir));
  await runner.test('an unknown saved value is ignored', () => testUnknownSavedValueIgnored(browser, pages, outDir));
  await runner.test('the toggle switches, saves, and shows the right label and icon', () => testToggleSwitchesAndSaves(browser, pages, outDir));
  await runner.test('a system change moves the button only while nothing is saved', () => testSystemChangeOnlyWhileUnsaved(browser, pages));
}

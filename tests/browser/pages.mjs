// Page-level checks: every page loads quietly (no console output, no script error, no request),
// the snapshot tabs switch panels and aria-selected, the ERROR page carries no chart script, and
// the chart script runs without error on a page that has no chart.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { assertQuiet, openPage, screenshots } from './harness.mjs';
import { readView } from './charts.mjs';

async function testPagesLoadQuietly(browser, pages, outDir) {
  for (const [name, path] of Object.entries(pages)) {
    for (const colorScheme of ['light', 'dark']) {
      const { context, page, problems } = await openPage(browser, path, { colorScheme });
      await page.screenshot({ path: join(outDir, `page-${name}-${colorScheme}.png`), fullPage: true });
      assertQuiet(problems);
      await context.close();
    }
  }
}

async function tabState(widget) {
  return widget.evaluate((element) => ({
    tabs: Array.from(element.querySelectorAll('.snap-tab')).map((tab) => ({
      index: tab.getAttribute('data-snap-idx'),
      active: tab.classList.contains('active'),
      selected: tab.getAttribute('aria-selected')
    })),
    visible: Array.from(element.querySelectorAll('.snap-panel'))
      .filter((panel) => !panel.hidden && getComputedStyle(panel).display !== 'none')
      .map((panel) => panel.getAttribute('data-snap-idx'))
  }));
}

function assertSelected(state, index) {
  assert.ok(state.tabs.length === 3, `expected 3 snapshot tabs, found ${state.tabs.length}`);
  for (const tab of state.tabs) {
    const chosen = tab.index === index;
    assert.equal(tab.active, chosen, `tab ${tab.index} active`);
    assert.equal(tab.selected, chosen ? 'true' : 'false', `tab ${tab.index} aria-selected`);
  }
  assert.deepEqual(state.visible, [index]);
}

// Clicking each tab of the left channel's widget marks it and shows only its panel, whose chart
// was drawn by the chart script; the right channel's widget is left alone.
async function testSnapshotTabs(browser, pages, outDir) {
  const { context, page, problems } = await openPage(browser, pages.analyze);
  const widget = page.locator('#sx-snap-widget-ch0');
  const other = page.locator('#sx-snap-widget-ch1');
  const otherBefore = await tabState(other);
  for (const index of ['2', '0', '1']) {
    await widget.locator(`.snap-tab[data-snap-idx="${index}"]`).click();
    assertSelected(await tabState(widget), index);
    const frame = widget.locator(`.snap-panel[data-snap-idx="${index}"] .zoom-frame`);
    assert.equal((await readView(frame)).raw, '0 1');
  }
  assert.deepEqual(await tabState(other), otherBefore);
  await screenshots(page, outDir, 'snapshot-tabs', widget);
  assertQuiet(problems);
  await context.close();
}

// The style sheet, the theme button and every non-JSON script of `html`, in a page without charts.
function pageWithoutCharts(html) {
  const style = html.match(/<style>[\s\S]*?<\/style>\n/)[0];
  const button = html.match(/<button type="button" class="theme-toggle"[\s\S]*?<\/button>/)[0];
  const scripts = html.match(/<script>[\s\S]*?<\/script>\n/g);
  return `<!doctype html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n<title>No charts</title>\n${style}` +
    `</head>\n<body>\n<div class="dash">\n<div class="topbar"><div class="right">${button}</div></div>\n` +
    `<p class="desc">A page with the plot page's style and scripts and no chart.</p>\n</div>\n` +
    `${scripts.join('')}</body>\n</html>\n`;
}

async function testNoChartPages(browser, pages, outDir) {
  const errorHtml = readFileSync(pages.error, 'utf8');
  assert.ok(!errorHtml.includes('MIN_SPAN_FRAC'), 'the ERROR page carries the chart script');
  assert.ok(!errorHtml.includes('class="zoom-frame"'), 'the ERROR page has a chart frame');
  const plotHtml = readFileSync(pages.plot, 'utf8');
  const bare = join(outDir, 'no-charts.html');
  writeFileSync(bare, pageWithoutCharts(plotHtml));
  assert.ok(readFileSync(bare, 'utf8').includes('MIN_SPAN_FRAC'), 'the chart script was not copied');
  const { context, page, problems } = await openPage(browser, bare);
  assert.equal(await page.locator('.zoom-frame').count(), 0);
  await page.locator('#themeToggle').click();
  assert.equal(await page.evaluate(() => document.documentElement.getAttribute('data-theme')), 'dark');
  await screenshots(page, outDir, 'no-charts');
  assertQuiet(problems);
  await context.close();
}

export async function pageTests(runner, browser, pages, outDir) {
  await runner.test('every page loads without console output, errors or requests', () => testPagesLoadQuietly(browser, pages, outDir));
  await runner.test('snapshot tabs switch panels and aria-selected', () => testSnapshotTabs(browser, pages, outDir));
  await runner.test('pages without charts run their scripts without error', () => testNoChartPages(browser, pages, outDir));
}

// Chart interaction on the real pages: redraw at load, wheel zoom down to the minimum span, box
// zoom threshold, panning against both edges, double click and reset button, and the trace
// toggle surviving a redraw.
import assert from 'node:assert/strict';
import { assertQuiet, openPage, screenshots } from './harness.mjs';

const MIN_SPAN_FRAC = 0.002;

// The view the chart script last drew, from the frame's data-view-start/-end attributes.
export async function readView(frame) {
  const [start, end] = await frame.evaluate((element) => [
    element.getAttribute('data-view-start'), element.getAttribute('data-view-end')]);
  assert.ok(start !== null && end !== null, 'the frame carries no drawn view');
  return { start: Number(start), end: Number(end), raw: `${start} ${end}` };
}

// Lets every queued input event reach the page before the view is read.
function settle(page) {
  return page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => resolve())));
}

// The frame on screen, and the plot's pixel range inside it (chartLeft/chartRight of 1000 units).
async function placeFrame(page, selector) {
  const frame = page.locator(selector);
  await frame.scrollIntoViewIfNeeded();
  await frame.evaluate((element) => element.scrollIntoView({ block: 'center' }));
  const box = await frame.boundingBox();
  const scale = box.width / 1000;
  return { frame, box, plotLeft: box.x + 58 * scale, plotRight: box.x + 990 * scale, y: box.y + box.height / 2 };
}

async function wheel(page, placed, x, deltaY, times) {
  await page.mouse.move(x, placed.y);
  for (let i = 0; i < times; i++) await page.mouse.wheel(0, deltaY);
  await settle(page);
}

async function drag(page, placed, fromX, toX, { shift = false } = {}) {
  if (shift) await page.keyboard.down('Shift');
  await page.mouse.move(fromX, placed.y);
  await page.mouse.down();
  await page.mouse.move((fromX + toX) / 2, placed.y, { steps: 2 });
  await page.mouse.move(toX, placed.y, { steps: 2 });
  await page.mouse.up();
  if (shift) await page.keyboard.up('Shift');
  await settle(page);
}

function assertNear(actual, expected, tolerance, what) {
  assert.ok(Math.abs(actual - expected) <= tolerance, `${what}: ${actual} is not within ${tolerance} of ${expected}`);
}

async function frameLabels(frame) {
  return frame.locator('svg text').allTextContents();
}

async function testRedrawAtLoad(browser, pages) {
  for (const path of [pages.analyze, pages.plot]) {
    const { context, page, problems } = await openPage(browser, path);
    const frames = page.locator('.zoom-frame[data-zoom-kind]');
    const count = await frames.count();
    assert.ok(count > 0, `no zoom frames in ${path}`);
    for (let i = 0; i < count; i++) {
      const view = await readView(frames.nth(i));
      assert.deepEqual([view.start, view.end], [0, 1]);
    }
    assertQuiet(problems);
    await context.close();
  }
}

// Zooming in without end stops at a span of MIN_SPAN_FRAC; zooming out returns to the full range.
async function testWheelZoom(browser, pages, outDir) {
  const { context, page, problems } = await openPage(browser, pages.analyze);
  const placed = await placeFrame(page, '#sx-envelope-frame-ch0');
  const before = await frameLabels(placed.frame);
  await wheel(page, placed, placed.plotLeft + (placed.plotRight - placed.plotLeft) * 0.3, -400, 40);
  const deep = await readView(placed.frame);
  assertNear(deep.end - deep.start, MIN_SPAN_FRAC, 1e-12, 'span after zooming in');
  await wheel(page, placed, placed.plotLeft + 10, -400, 5);
  const deeper = await readView(placed.frame);
  assertNear(deeper.end - deeper.start, MIN_SPAN_FRAC, 1e-12, 'span after zooming in further');
  assert.notDeepEqual(await frameLabels(placed.frame), before, 'the time labels were not redrawn');
  await screenshots(page, outDir, 'wheel-zoom-min-span', placed.frame);
  await wheel(page, placed, placed.plotLeft + 100, 400, 40);
  assert.deepEqual(await readView(placed.frame), { start: 0, end: 1, raw: '0 1' });
  assertQuiet(problems);
  await context.close();
}

// A 3-pixel shift-drag leaves the view alone; a wide one zooms to the part under the box.
async function testBoxZoom(browser, pages, outDir) {
  const { context, page, problems } = await openPage(browser, pages.analyze);
  const placed = await placeFrame(page, '#sx-envelope-frame-ch0');
  const width = placed.plotRight - placed.plotLeft;
  const before = await readView(placed.frame);
  await drag(page, placed, placed.plotLeft + width * 0.5, placed.plotLeft + width * 0.5 + 3, { shift: true });
  assert.equal((await readView(placed.frame)).raw, before.raw, 'a 3-pixel box changed the view');
  assert.equal(await placed.frame.locator('.zoom-box').isHidden(), true);
  await drag(page, placed, placed.plotLeft + width * 0.25, placed.plotLeft + width * 0.75, { shift: true });
  const boxed = await readView(placed.frame);
  assertNear(boxed.start, 0.25, 0.003, 'box start');
  assertNear(boxed.end, 0.75, 0.003, 'box end');
  assert.equal(await placed.frame.locator('.zoom-box').isHidden(), true);
  await screenshots(page, outDir, 'box-zoom', placed.frame);
  assertQuiet(problems);
  await context.close();
}

// Panning far past either end stops at that end with the span unchanged.
async function testPanEdges(browser, pages, outDir) {
  const { context, page, problems } = await openPage(browser, pages.plot);
  const placed = await placeFrame(page, '#sx-spectral-linear-frame-ch0');
  const middle = (placed.plotLeft + placed.plotRight) / 2;
  await wheel(page, placed, middle, -300, 4);
  const zoomed = await readView(placed.frame);
  const span = zoomed.end - zoomed.start;
  assert.ok(span < 0.5, `the view did not zoom in (span ${span})`);
  // Each drag moves the view by nearly its own span: ten of them cross the whole range.
  for (let i = 0; i < 10; i++) await drag(page, placed, placed.plotLeft + 20, placed.plotRight - 20);
  const left = await readView(placed.frame);
  assert.equal(left.start, 0);
  assertNear(left.end - left.start, span, 1e-12, 'span at the left edge');
  for (let i = 0; i < 10; i++) await drag(page, placed, placed.plotRight - 20, placed.plotLeft + 20);
  const right = await readView(placed.frame);
  assertNear(right.end, 1, 1e-12, 'end at the right edge');
  assertNear(right.end - right.start, span, 1e-12, 'span at the right edge');
  await screenshots(page, outDir, 'pan-right-edge', placed.frame);
  assertQuiet(problems);
  await context.close();
}

// A double click on the frame and the frame's reset button both restore the full range.
async function testRestore(browser, pages, outDir) {
  const { context, page, problems } = await openPage(browser, pages.plot);
  const placed = await placeFrame(page, '#sx-spectral-frame-ch0');
  const middle = (placed.plotLeft + placed.plotRight) / 2;
  await wheel(page, placed, middle, -300, 5);
  assert.notEqual((await readView(placed.frame)).raw, '0 1');
  await page.mouse.dblclick(middle, placed.y);
  await settle(page);
  assert.equal((await readView(placed.frame)).raw, '0 1');
  await wheel(page, placed, middle, -300, 5);
  await screenshots(page, outDir, 'spectrum-zoomed', placed.frame);
  await page.locator('.zoom-reset[data-zoom-target="sx-spectral-frame-ch0"]').click();
  assert.equal((await readView(placed.frame)).raw, '0 1');
  assertQuiet(problems);
  await context.close();
}

async function traceDisplay(svg) {
  return svg.evaluate((element) => {
    const shown = (trace) => Array.from(element.querySelectorAll(`[data-trace="${trace}"]`))
      .map((node) => getComputedStyle(node).display !== 'none');
    return { ref: shown('ref'), dut: shown('dut') };
  });
}

function assertTraces(display, ref, dut) {
  assert.ok(display.ref.length > 0 && display.dut.length > 0, 'the chart has no ref and dut traces');
  assert.ok(display.ref.every((shown) => shown === ref), `ref traces shown should be ${ref}`);
  assert.ok(display.dut.every((shown) => shown === dut), `dut traces shown should be ${dut}`);
}

// The Ref/DUT/Both buttons hide and show the traces, mark the chosen button, and the choice
// survives a zoom redraw.
async function testTraceToggle(browser, pages, outDir) {
  const { context, page, problems } = await openPage(browser, pages.analyze);
  const placed = await placeFrame(page, '#sx-envelope-frame-ch0');
  const svg = placed.frame.locator('svg');
  const toggle = page.locator('.trace-toggle[data-target="sx-envelope-frame-ch0"]');
  assertTraces(await traceDisplay(svg), true, true);
  await toggle.locator('button[data-mode="ref"]').click();
  assert.equal(await svg.getAttribute('data-trace-mode'), 'ref');
  assert.equal(await toggle.locator('button[data-mode="ref"]').getAttribute('class'), 'active ref-active');
  assert.equal(await toggle.locator('button[data-mode="both"]').getAttribute('class'), '');
  assertTraces(await traceDisplay(svg), true, false);
  await wheel(page, placed, (placed.plotLeft + placed.plotRight) / 2, -300, 3);
  assert.notEqual((await readView(placed.frame)).raw, '0 1');
  assertTraces(await traceDisplay(svg), true, false);
  await screenshots(page, outDir, 'trace-toggle-ref', page.locator('.scope', { has: placed.frame }));
  await toggle.locator('button[data-mode="dut"]').click();
  assert.equal(await toggle.locator('button[data-mode="dut"]').getAttribute('class'), 'active dut-active');
  assertTraces(await traceDisplay(svg), false, true);
  await toggle.locator('button[data-mode="both"]').click();
  assert.equal(await toggle.locator('button[data-mode="both"]').getAttribute('class'), 'active');
  assertTraces(await traceDisplay(svg), true, true);
  assertQuiet(problems);
  await context.close();
}

export async function chartTests(runner, browser, pages, outDir) {
  await runner.test('charts are redrawn at load with the full view', () => testRedrawAtLoad(browser, pages));
  await runner.test('wheel zoom stops at 0.2 % of the range', () => testWheelZoom(browser, pages, outDir));
  await runner.test('a 3-pixel shift-drag keeps the view, a wide one box-zooms', () => testBoxZoom(browser, pages, outDir));
  await runner.test('panning stops at either edge without shrinking', () => testPanEdges(browser, pages, outDir));
  await runner.test('double click and reset restore the full range', () => testRestore(browser, pages, outDir));
  await runner.test('the trace toggle hides and shows traces and survives a zoom', () => testTraceToggle(browser, pages, outDir));
}

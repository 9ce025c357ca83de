// The traces the chart script draws at load: every chart of the analyze and plot pages draws its
// reference and DUT traces from the JSON elements its data names, exactly as the chart rules
// say (computed here independently from the same data), each distinct trace is embedded once,
// and the envelope outline of tiny files matches the rule's worked examples.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { assertQuiet, openPage } from './harness.mjs';

const COLUMNS = 4096;
const AMP_MAX = 1.2;
const TOLERANCE = 0.011; // two-decimal coordinates may round differently by one unit

// Every JSON element of a page by id, parsed.
function jsonElements(html) {
  const elements = new Map();
  for (const match of html.matchAll(/<script type="application\/json" id="([^"]+)">([\s\S]*?)<\/script>/g)) {
    elements.set(match[1], JSON.parse(match[2]));
  }
  return elements;
}

function clamp(value, low, high) {
  return Math.min(Math.max(value, low), high);
}

function levelY(data, db, top, bottom) {
  return (clamp(db, data.dbMin, data.dbMax) - data.dbMin) / (data.dbMin - data.dbMax) * (bottom - top) + bottom;
}

function envelopeY(data, value) {
  if (data.yScale === 'db') return levelY(data, value, data.chartTop, data.chartBottom);
  const half = (data.chartBottom - data.chartTop) / 2;
  return clamp(value, -AMP_MAX, AMP_MAX) / -AMP_MAX * half + (data.chartTop + half);
}

// The outline of a whole envelope trace: along the maxima left to right, an invalid column
// closing the current piece; the minima back from the last column to the first gap, for the
// piece that reaches the last column only.
function expectedOutline(data, trace) {
  const x = (edge) => (data.chartLeft + edge / COLUMNS * (data.chartRight - data.chartLeft)).toFixed(2);
  const y = (value) => envelopeY(data, value).toFixed(2);
  let outline = '';
  let inPiece = false;
  for (let i = 0; i < COLUMNS; i++) {
    if (!trace.valid[i]) {
      if (inPiece) outline += 'Z ';
      inPiece = false;
      continue;
    }
    const top = y(trace.max[i]);
    outline += inPiece ? `L${x(i + 1)},${top} ` : `M${x(i)},${top} L${x(i + 1)},${top} `;
    inPiece = true;
  }
  if (!trace.valid[COLUMNS - 1]) return outline;
  for (let j = COLUMNS - 1; j >= 0 && trace.valid[j]; j--) outline += `L${x(j)},${y(trace.min[j])} `;
  return `${outline}Z `;
}

// Every bin as a point, leaving out those below freqMinHz on the log scale.
function expectedPoints(data, levels) {
  const low = Math.log10(data.freqMinHz);
  const high = Math.log10(data.nyquistHz);
  const unit = (hz) => (data.freqScale === 'linear' ? hz / data.nyquistHz : (Math.log10(hz) - low) / (high - low));
  const points = [];
  levels.forEach((level, k) => {
    const hz = k * data.binHz;
    if (data.freqScale === 'log' && hz < data.freqMinHz) return;
    const x = data.chartLeft + unit(hz) * (data.chartRight - data.chartLeft);
    points.push(`${x.toFixed(2)},${levelY(data, level, data.chartTop, data.chartBottom).toFixed(2)}`);
  });
  return points.join(' ');
}

// Two drawings agree when their commands match and every number lies within TOLERANCE.
function assertSameDrawing(actual, expected, what) {
  const split = (text) => text.trim().split(/([MLZ, ])/).filter((token) => token !== '' && token !== ' ');
  const got = split(actual);
  const want = split(expected);
  assert.equal(got.length, want.length, `${what}: ${got.length} tokens drawn, ${want.length} expected`);
  want.forEach((token, i) => {
    const number = Number(token);
    if (Number.isNaN(number)) {
      assert.equal(got[i], token, `${what}: token ${i}`);
    } else {
      assert.ok(Math.abs(Number(got[i]) - number) <= TOLERANCE, `${what}: ${got[i]} for ${token} at token ${i}`);
    }
  });
}

const KINDS = {
  waveform: { data: 'sx-envelope-data', svg: 'sx-envelope-svg', selector: 'path', attribute: 'd', expected: expectedOutline },
  spectral: { data: 'sx-spectral-data', svg: 'sx-spectral-svg', selector: 'polyline', attribute: 'points', expected: expectedPoints }
};

// What each chart of the page drew for each trace, read from the DOM after load.
async function drawnTraces(page) {
  return page.evaluate((kinds) => Array.from(document.querySelectorAll('.zoom-frame[data-zoom-kind]')).map((frame) => {
    const kind = kinds[frame.getAttribute('data-zoom-kind')];
    const svg = frame.querySelector('svg');
    const drawn = {};
    for (const trace of ['ref', 'dut']) {
      drawn[trace] = Array.from(svg.querySelectorAll(`${kind.selector}[data-trace="${trace}"]`))
        .map((element) => element.getAttribute(kind.attribute));
    }
    return { kind: frame.getAttribute('data-zoom-kind'), svgId: svg.id, drawn };
  }), Object.fromEntries(Object.entries(KINDS).map(([name, kind]) => [name, { selector: kind.selector, attribute: kind.attribute }])));
}

function assertChartTraces(chart, elements) {
  const kind = KINDS[chart.kind];
  const data = elements.get(kind.data + chart.svgId.slice(kind.svg.length));
  assert.ok(data, `${chart.svgId} has no data element`);
  for (const trace of ['ref', 'dut']) {
    if (data[trace] === null) {
      assert.equal(chart.drawn[trace].length, 0, `${chart.svgId} drew a ${trace} trace it has no data for`);
      continue;
    }
    const values = elements.get(data[trace]);
    const named = typeof data[trace] === 'string' ? data[trace] : `a ${typeof data[trace]}`;
    assert.ok(values, `${chart.svgId} names ${named} as its ${trace} trace, which the page does not hold`);
    assert.equal(chart.drawn[trace].length, 1, `${chart.svgId} should draw one ${trace} trace`);
    assertSameDrawing(chart.drawn[trace][0], kind.expected(data, values), `${chart.svgId} ${trace}`);
  }
}

async function testEveryChartDrawsItsTraces(browser, pages) {
  for (const path of [pages.analyze, pages.plot]) {
    const html = readFileSync(path, 'utf8');
    const elements = jsonElements(html);
    const { context, page, problems } = await openPage(browser, path);
    const charts = await drawnTraces(page);
    assert.ok(charts.length > 0, `no charts in ${path}`);
    charts.forEach((chart) => assertChartTraces(chart, elements));
    assert.ok(charts.some((chart) => chart.drawn.dut.length > 0) === (path === pages.analyze),
      'only the analyze page draws DUT traces');
    assertQuiet(problems);
    await context.close();
  }
}

// No two trace elements of a page hold the same trace, and the server draws no trace itself.
function testTracesEmbeddedOnce(pages) {
  for (const path of [pages.analyze, pages.plot]) {
    const html = readFileSync(path, 'utf8');
    const sets = Array.from(html.matchAll(/<script type="application\/json" id="sx-(?:envelope|spectrum)-set-\d+">([\s\S]*?)<\/script>/g))
      .map((match) => match[1]);
    assert.ok(sets.length > 0, `no trace elements in ${path}`);
    assert.equal(new Set(sets).size, sets.length, `${path} embeds a trace twice`);
    assert.ok(!/data-trace="(?:ref|dut)" d="/.test(html), `${path} holds a server-drawn outline`);
  }
}

async function drawnOutline(browser, path) {
  const { context, page, problems } = await openPage(browser, path);
  const outline = await page.locator('#sx-envelope-svg path[data-trace="ref"]').getAttribute('d');
  assertQuiet(problems);
  await context.close();
  return outline;
}

// Three frames over 4096 columns: three one-column pieces, of which only the last (which reaches
// the right end) gets its lower edge; a sample of 1.5 is drawn at the top of the scale.
async function testTinyOutlines(browser, pages) {
  assert.equal(await drawnOutline(browser, pages.threeFrames),
    'M368.59,52.58 L368.82,52.58 Z M679.18,98.21 L679.41,98.21 Z M989.77,37.38 L990.00,37.38 L989.77,37.38 Z ');
  assert.equal(await drawnOutline(browser, pages.overScale), 'M989.77,10.00 L990.00,10.00 L989.77,10.00 Z ');
}

export async function traceTests(runner, browser, pages) {
  await runner.test('every chart draws its traces from the embedded data at load', () => testEveryChartDrawsItsTraces(browser, pages));
  await runner.test('each distinct trace is embedded once and none is drawn by the server', () => testTracesEmbeddedOnce(pages));
  await runner.test('tiny files give the outline of the drawing rule', () => testTinyOutlines(browser, pages));
}

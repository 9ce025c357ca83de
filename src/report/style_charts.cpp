// Style rules of the chart frames: scope and its head, zoom toolbar, trace toggle, reset button,
// zoom frame with its box, legend and chart notes.
#include "report/page_asset_texts.h"

const char kStyleRulesCharts[] = R"css(.scope { margin: 0 0 14px; border-radius: 12px;
  border: 1px solid var(--line); background: var(--surface); overflow: hidden; }
.scope.overview { margin-bottom: 12px; }
.scope-head { display: flex; flex-wrap: wrap; align-items: center; justify-content: space-between;
  gap: 8px 12px; padding: 8px 12px; border-bottom: 1px solid var(--line);
  background: var(--surface-sunken); }
.scope-head .title { font-size: 13px; font-weight: 650; color: var(--ink); }
.zoom-toolbar { display: flex; flex-wrap: wrap; align-items: center; gap: 8px; }
.zoom-hint { font-size: 11.5px; color: var(--muted); }
.trace-toggle { display: inline-flex; padding: 2px; border-radius: 999px;
  border: 1px solid var(--line-strong); background: var(--surface); }
.trace-toggle button { padding: 2px 10px; border: 1px solid transparent; border-radius: 999px;
  background: transparent; color: var(--ink-soft); font: inherit; font-size: 11.5px;
  font-weight: 600; cursor: pointer; }
.trace-toggle button:hover { color: var(--ink); }
.trace-toggle button.active { background: var(--accent-soft); color: var(--ink);
  border-color: var(--accent); }
.trace-toggle button.ref-active { border-color: var(--ref); color: var(--ref);
  background: var(--surface-sunken); }
.trace-toggle button.dut-active { border-color: var(--dut); color: var(--dut);
  background: var(--surface-sunken); }
.zoom-reset { padding: 3px 11px; border-radius: 999px; border: 1px solid var(--line-strong);
  background: var(--surface); color: var(--ink-soft); font: inherit; font-size: 11.5px;
  font-weight: 600; cursor: pointer; }
.zoom-reset:hover { color: var(--accent); border-color: var(--accent); }
.zoom-frame { position: relative; padding: 6px 0 2px; cursor: grab; user-select: none;
  -webkit-user-select: none; touch-action: none; }
.zoom-frame:active { cursor: grabbing; }
.zoom-frame svg { display: block; width: 100%; height: auto; overflow: hidden; }
.zoom-frame svg text { font-family: var(--font-data); }
.zoom-box { position: absolute; top: 6px; bottom: 2px; pointer-events: none;
  border: 1px solid var(--accent); border-radius: 3px; background: var(--accent-soft);
  opacity: 0.55; }
.legend-row { display: flex; flex-wrap: wrap; gap: 6px 18px; padding: 8px 12px 10px;
  font-size: 12px; color: var(--ink-soft); border-top: 1px solid var(--line); }
.legend-row > span { display: inline-flex; align-items: center; gap: 7px; }
.legend-row .sw { display: inline-block; width: 16px; height: 4px; border-radius: 2px; }
.chart-note, .sx-chart-note { margin: 0 0 12px; padding: 10px 12px; border-radius: 10px;
  font-size: 13px; color: var(--ink-soft); background: var(--surface-sunken);
  border: 1px dashed var(--line-strong); }
@media (max-width: 520px) {
  .zoom-hint { display: none; }
}
)css";

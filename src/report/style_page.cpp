// Style rules of the page frame: document, top bar and theme toggle, signal row, KPI grid, note,
// navigation tabs and footer.
#include "report/page_asset_texts.h"

const char kStyleRulesPage[] = R"css(:root { color-scheme: light; }
:root[data-theme="dark"] { color-scheme: dark; }
@media (prefers-color-scheme: dark) {
  :root:not([data-theme="light"]) { color-scheme: dark; }
}
*, *::before, *::after { box-sizing: border-box; }
[hidden] { display: none !important; }
html { -webkit-text-size-adjust: 100%; }
body { margin: 0; background: var(--bg); color: var(--ink); font-family: var(--font-body);
  font-size: 14px; line-height: 1.5; -webkit-font-smoothing: antialiased; }
code { font-family: var(--font-data); font-size: 0.92em; padding: 1px 5px; border-radius: 5px;
  background: var(--surface-sunken); border: 1px solid var(--line); }
b { font-weight: 650; }
.dash { max-width: 1240px; margin: 0 auto; padding: 20px 24px 40px; }
.topbar { display: flex; align-items: center; justify-content: space-between; gap: 16px;
  padding: 4px 0 18px; }
.brand { display: flex; align-items: center; gap: 12px; min-width: 0; }
.brand .glyph { display: inline-flex; align-items: center; justify-content: center;
  width: 38px; height: 38px; border-radius: 11px; flex: none;
  background: linear-gradient(135deg, var(--logo-accent), var(--accent));
  box-shadow: var(--shadow); }
.brand .glyph svg { width: 24px; height: 24px; display: block; }
.brand .name { font-family: var(--font-display); font-size: 20px; font-weight: 700;
  letter-spacing: -0.01em; }
.topbar .right { display: flex; align-items: center; gap: 12px; }
.topbar .meta { color: var(--ink-soft); font-size: 12.5px; font-family: var(--font-data); }
.topbar .meta b { color: var(--ink); font-weight: 600; }
.theme-toggle { display: inline-flex; align-items: center; justify-content: center;
  width: 38px; height: 38px; padding: 0; border-radius: 50%; cursor: pointer;
  border: 1px solid var(--line-strong); background: var(--surface); color: var(--ink-soft);
  box-shadow: var(--shadow); transition: color 0.15s, border-color 0.15s; }
.theme-toggle:hover { color: var(--accent); border-color: var(--accent); }
.theme-toggle:focus-visible { outline: 2px solid var(--accent); outline-offset: 2px; }
.theme-toggle svg { width: 19px; height: 19px; display: block; }
.theme-toggle .ti-sun { display: none; }
.theme-toggle[data-icon="sun"] .ti-sun { display: block; }
.theme-toggle[data-icon="sun"] .ti-moon { display: none; }
.signal-row { display: flex; flex-wrap: wrap; align-items: stretch; gap: 12px;
  margin-bottom: 16px; }
.signal-id { flex: 1 1 320px; min-width: 0; display: flex; flex-direction: column; gap: 4px;
  padding: 12px 16px; border-radius: 14px; background: var(--surface);
  border: 1px solid var(--line); border-left: 4px solid var(--ref); box-shadow: var(--shadow); }
.signal-id.dut { border-left-color: var(--dut); }
.signal-id.single { flex-basis: 480px; }
.signal-id .tag { font-size: 11px; font-weight: 700; letter-spacing: 0.08em;
  text-transform: uppercase; color: var(--ref); }
.signal-id.dut .tag { color: var(--dut); }
.signal-id .fname { font-family: var(--font-data); font-size: 13px; color: var(--ink);
  overflow-wrap: anywhere; }
.signal-meta { flex: 1 1 100%; color: var(--ink-soft); font-size: 12.5px;
  font-family: var(--font-data); padding: 0 4px; }
.kpi-grid { display: grid; grid-template-columns: repeat(4, minmax(0, 1fr)); gap: 12px;
  margin-bottom: 12px; }
.kpi { padding: 14px 16px; border-radius: 14px; background: var(--surface);
  border: 1px solid var(--line); box-shadow: var(--shadow); min-width: 0; }
.kpi .k { font-size: 11px; font-weight: 700; letter-spacing: 0.08em; text-transform: uppercase;
  color: var(--muted); }
.kpi .v { font-family: var(--font-display); font-size: 24px; font-weight: 700; line-height: 1.25;
  margin-top: 4px; overflow-wrap: anywhere; }
.kpi .v small { font-family: var(--font-body); font-size: 12px; font-weight: 500;
  color: var(--ink-soft); }
.kpi-sub { margin-top: 2px; font-size: 12px; color: var(--ink-soft); }
.kpi.verdict { background: var(--fail-soft); border-color: var(--fail-line); }
.kpi.verdict .k { color: var(--fail); }
.kpi.verdict .v { color: var(--fail); font-size: 28px; letter-spacing: 0.04em; }
.kpi.verdict.ok { background: var(--pass-soft); border-color: var(--pass-line); }
.kpi.verdict.ok .k, .kpi.verdict.ok .v { color: var(--pass); }
.kpi-note { margin: 0 0 14px; padding: 10px 14px; border-radius: 12px; font-size: 13px;
  background: var(--gate-bg); color: var(--gate); border: 1px solid var(--line); }
.kpi-note code { background: transparent; border-color: currentColor; color: inherit; }
.nav-tabs { position: sticky; top: 0; z-index: 5; display: flex; flex-wrap: wrap; gap: 6px;
  margin: 4px 0 16px; padding: 8px 10px; border-radius: 14px; background: var(--surface);
  border: 1px solid var(--line); box-shadow: var(--shadow); }
.nav-tabs a { display: inline-flex; align-items: center; gap: 6px; padding: 5px 12px;
  border-radius: 999px; font-size: 13px; font-weight: 600; color: var(--ink-soft);
  text-decoration: none; border: 1px solid transparent; }
.nav-tabs a:hover { color: var(--accent); background: var(--accent-soft); }
.nav-tabs a[data-fail] { color: var(--fail); background: var(--fail-soft);
  border-color: var(--fail-line); }
.nav-tabs a[data-fail]::before { content: ""; width: 7px; height: 7px; border-radius: 50%;
  background: currentColor; }
.nav-tabs a[data-nongating] { color: var(--gate); background: var(--gate-bg);
  border-color: transparent; }
footer { margin-top: 28px; padding: 16px 4px 0; border-top: 1px solid var(--line);
  color: var(--muted); font-size: 12.5px; }
footer b { color: var(--ink-soft); }
.footer-row-top { display: flex; flex-wrap: wrap; justify-content: space-between; gap: 8px; }
.footer-row-tester { margin-top: 6px; color: var(--ink-soft); }
@media (max-width: 860px) {
  .kpi-grid { grid-template-columns: repeat(2, minmax(0, 1fr)); }
}
@media (max-width: 520px) {
  .dash { padding: 14px 12px 32px; }
  .kpi-grid { grid-template-columns: minmax(0, 1fr); }
  .topbar .meta { display: none; }
}
)css";

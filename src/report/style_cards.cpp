// Style rules of the cards: frame and badges, tiles, difference-rate bar, alignment gauge, tables,
// notes and the snapshot widget's tabs.
#include "report/page_asset_texts.h"

const char kStyleRulesCards[] = R"css(.card { margin-bottom: 16px; border-radius: 16px;
  background: var(--surface); border: 1px solid var(--line); box-shadow: var(--shadow);
  scroll-margin-top: 64px; }
.card-head { display: flex; align-items: center; justify-content: space-between; gap: 12px;
  padding: 14px 18px; border-bottom: 1px solid var(--line); }
.card-head .htext { display: flex; flex-wrap: wrap; align-items: baseline; gap: 4px 12px;
  min-width: 0; }
.card-head h3 { margin: 0; font-family: var(--font-display); font-size: 17px; font-weight: 700; }
.card-head .sub { color: var(--muted); font-size: 12.5px; }
.badge { flex: none; padding: 3px 11px; border-radius: 999px; font-size: 12px; font-weight: 700;
  border: 1px solid transparent; white-space: nowrap; }
.badge.pass { color: var(--pass); background: var(--pass-soft); border-color: var(--pass-line); }
.badge.fail { color: var(--fail); background: var(--fail-soft); border-color: var(--fail-line); }
.badge.info { color: var(--ink-soft); background: var(--surface-sunken);
  border-color: var(--line-strong); }
.card-body { padding: 16px 18px 18px; }
.card-body > :first-child { margin-top: 0; }
.card-body > :last-child { margin-bottom: 0; }
.desc { margin: 0 0 12px; color: var(--ink-soft); font-size: 13px; }
.tile-row { display: grid; grid-template-columns: repeat(auto-fit, minmax(150px, 1fr));
  gap: 10px; margin: 0 0 12px; }
.tile-row.card-row-gap { margin-top: 16px; }
.tile { min-width: 0; padding: 10px 12px; border-radius: 11px; background: var(--surface-sunken);
  border: 1px solid var(--line); }
.tile-wide { grid-column: span 2; }
.tile .k { font-size: 11px; font-weight: 700; letter-spacing: 0.06em; text-transform: uppercase;
  color: var(--muted); }
.tile .v { margin-top: 2px; font-family: var(--font-data); font-size: 15px; font-weight: 600;
  color: var(--ink); overflow-wrap: anywhere; }
.tile .v.fail, .v.fail { color: var(--fail); }
.tile .v.pass, .v.pass { color: var(--pass); }
.pct { font-size: 12px; font-weight: 500; color: var(--ink-soft); }
.v-sub { margin-top: 2px; font-family: var(--font-data); font-size: 12px; color: var(--ink-soft); }
.delta { color: var(--fail); font-weight: 600; }
.diffrate-bar { margin: 4px 0 14px; }
.diffrate-bar-track { height: 8px; border-radius: 999px; overflow: hidden;
  background: var(--surface-sunken); border: 1px solid var(--line); }
.diffrate-bar-fill { height: 100%; min-width: 2px; border-radius: 999px; background: var(--fail); }
.diffrate-bar-label { margin-top: 4px; font-size: 12px; color: var(--ink-soft); }
.align-gauge { margin: 0 0 14px; padding: 12px 14px; border-radius: 12px;
  background: var(--surface-sunken); border: 1px solid var(--line); }
.align-gauge-track { position: relative; height: 10px; border-radius: 999px;
  background: linear-gradient(90deg, var(--gauge-poor-soft) 0 20%, var(--gauge-fair-soft) 20% 45%,
    var(--gauge-mid-soft) 45% 75%, var(--gauge-good-soft) 75% 100%); }
.align-gauge-pointer { position: absolute; top: -4px; width: 4px; height: 18px;
  margin-left: -2px; border-radius: 2px; background: var(--ink);
  box-shadow: 0 0 0 2px var(--surface); }
.align-gauge-value { display: flex; align-items: baseline; gap: 10px; margin-top: 10px; }
.align-gauge-num { font-family: var(--font-data); font-size: 20px; font-weight: 700; }
.align-gauge-word { font-size: 12px; font-weight: 700; text-transform: uppercase;
  letter-spacing: 0.06em; }
.align-gauge-word.poor { color: var(--fail); }
.align-gauge-word.fair { color: var(--gate); }
.align-gauge-word.good { color: var(--gauge-good); }
.align-gauge-word.excellent { color: var(--pass); }
.align-gauge-caption { margin-top: 6px; font-size: 13px; color: var(--ink-soft); }
.align-gauge-caption.fail { color: var(--fail); font-weight: 600; }
.compare-table-wrap { margin: 0 0 14px; overflow-x: auto; }
.compare-table-title { margin: 0 0 6px; font-size: 11px; font-weight: 700;
  letter-spacing: 0.06em; text-transform: uppercase; color: var(--muted); }
.compare-table, .dt { width: 100%; border-collapse: collapse; font-size: 13px; }
.compare-table th, .compare-table td, .dt th, .dt td { padding: 7px 10px; text-align: left;
  border-bottom: 1px solid var(--line); vertical-align: top; }
.compare-table thead th, .dt th { font-size: 11px; font-weight: 700; letter-spacing: 0.06em;
  text-transform: uppercase; color: var(--muted); }
.compare-table tbody th { font-weight: 600; color: var(--ink-soft); }
.compare-table td { font-family: var(--font-data); }
.compare-table td.fail { color: var(--fail); font-weight: 700; background: var(--fail-soft); }
.loudness-delta-label { display: block; font-family: var(--font-body); font-size: 11px;
  color: var(--muted); }
.dt td { font-family: var(--font-data); }
.dt tr:last-child td { border-bottom: none; }
.overflow-x { overflow-x: auto; }
.spectral-rollup { margin: 0 0 10px; font-weight: 600; }
.fail-detail { color: var(--fail); }
.spectral-snap-tabs { display: flex; flex-wrap: wrap; gap: 6px; margin-bottom: 10px; }
.snap-tab { display: inline-flex; align-items: center; gap: 7px; padding: 5px 12px;
  border-radius: 999px; border: 1px solid var(--line-strong); background: var(--surface);
  color: var(--ink-soft); font: inherit; font-size: 12.5px; font-weight: 600; cursor: pointer; }
.snap-tab:hover { border-color: var(--accent); color: var(--accent); }
.snap-tab.active { background: var(--accent-soft); border-color: var(--accent);
  color: var(--ink); }
.snap-tab-dot { width: 8px; height: 8px; border-radius: 50%; background: var(--muted); }
.snap-tab-dot.pass { background: var(--pass); }
.snap-tab-dot.fail { background: var(--fail); }
.snap-tab-db { font-family: var(--font-data); font-size: 11.5px; color: var(--fail); }
.spectral-snap-panels { min-width: 0; }
.snap-panel { min-width: 0; }
.channel-gallery-heading { margin: 18px 0 10px; font-family: var(--font-display); font-size: 14px;
  font-weight: 700; color: var(--ink-soft); }
.card-body > .channel-gallery-heading:first-child { margin-top: 0; }
.run-error { margin: 0 0 12px; padding: 12px 14px; border-radius: 12px;
  font-family: var(--font-data); font-size: 13px; color: var(--fail);
  background: var(--fail-soft); border: 1px solid var(--fail-line); overflow-wrap: anywhere; }
@media (max-width: 520px) {
  .tile-wide { grid-column: auto; }
  .card-head { flex-wrap: wrap; }
}
)css";

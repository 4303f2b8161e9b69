#include "ppfinfo/Html.h"

#include "ppfinfo/Text.h"

namespace PpfInfo
{
    std::string Escaped(std::string_view text)
    {
        std::string markup;
        for (const char c : ToPrintable(text))
        {
            switch (c)
            {
            case '&':
                markup += "&amp;";
                break;
            case '<':
                markup += "&lt;";
                break;
            case '>':
                markup += "&gt;";
                break;
            case '"':
                markup += "&quot;";
                break;
            case '\'':
                markup += "&#39;";
                break;
            default:
                markup += c;
            }
        }
        return markup;
    }

    std::string_view ReportStyle()
    {
        return R"(
:root { color-scheme: light dark; --page: #f3f4f6; --panel: #fff; --text: #16181d; --soft: #5b6270;
  --line: #d9dce2; --paper: #fff; --track: #e6e8ec; --alert: #b42318; --alert-panel: #fef3f2; }
@media (prefers-color-scheme: dark) {
  :root { --page: #14161a; --panel: #1d2026; --text: #e8eaee; --soft: #9aa2b1; --line: #343944; --paper: #e9e9e6; --track: #c9cdd5;
    --alert: #ff9c92; --alert-panel: #2c1a18; }
  .picture { filter: brightness(.92); }
}
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 84rem; padding: 1rem clamp(.6rem, 2.5vw, 2rem) 4rem; background: var(--page);
  color: var(--text); font: 16px/1.45 system-ui, "Segoe UI", Roboto, "Helvetica Neue", sans-serif; }
h1 { font-size: 1.6rem; margin: .4rem 0 0; overflow-wrap: anywhere; }
h2 { font-size: 1.3rem; margin: 0 0 .6rem; overflow-wrap: anywhere; }
h3 { font-size: 1.1rem; margin: 1.4rem 0 .6rem; text-transform: capitalize; }
h4 { font-size: 1rem; margin: 1.2rem 0 .4rem; }
.soft { color: var(--soft); font-size: .9rem; }
header { margin-bottom: 1.2rem; }
nav ol { display: flex; flex-wrap: wrap; gap: .3rem 1rem; list-style: none; margin: .6rem 0 0; padding: 0; }
a { color: inherit; }
.sheet, .unusual { background: var(--panel); border: 1px solid var(--line); border-radius: .6rem;
  padding: clamp(.7rem, 2vw, 1.4rem); margin: 1rem 0; }
.unusual { background: var(--alert-panel); border-color: var(--alert); }
.unusual h2 { color: var(--alert); }
.unusual ul { margin: 0; padding-left: 1.2rem; overflow-wrap: anywhere; }
dl { display: grid; grid-template-columns: minmax(6rem, max-content) 1fr; gap: .15rem 1.2rem; margin: 0; }
dt { color: var(--soft); overflow-wrap: anywhere; }
dd { margin: 0; overflow-wrap: anywhere; font-variant-numeric: tabular-nums; }
.overview { display: grid; grid-template-columns: minmax(0, 1fr) 21rem; gap: 1.2rem; align-items: start; }
.separations { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 26rem), 1fr));
  gap: 1.2rem; margin-top: 1.2rem; }
figure { margin: 0 auto; width: 100%; max-width: calc(90vh * var(--ratio)); break-inside: avoid; }
.picture { display: block; width: 100%; height: auto; isolation: isolate; background: var(--track);
  border: 1px solid var(--line); border-radius: .25rem .25rem 0 0; print-color-adjust: exact; -webkit-print-color-adjust: exact; }
.picture .paper { fill: var(--paper); }
.picture image, .picture use { mix-blend-mode: multiply; }
.picture.small image { image-rendering: pixelated; }
.separation a { display: block; cursor: zoom-in; }
.large { display: none; }
.large:target { display: flex; flex-direction: column; gap: .5rem; position: fixed; inset: 0; z-index: 1; padding: .6rem;
  background: var(--page); }
.large .picture { flex: 1; min-height: 0; cursor: default; background: none; border: 0; }
figcaption { display: flex; flex-wrap: wrap; align-items: baseline; gap: .15rem .6rem; margin: 0 0 .35rem; }
figcaption b { overflow-wrap: anywhere; }
figcaption .per { margin-left: auto; font-weight: 600; font-variant-numeric: tabular-nums; }
.swatch { display: inline-block; width: .85em; height: .85em; border-radius: 50%; border: 1px solid #0004;
  outline: 1px solid color-mix(in srgb, currentColor 35%, transparent); flex: none; align-self: center; print-color-adjust: exact;
  -webkit-print-color-adjust: exact; }
.chart { display: block; overflow: visible; background: var(--paper); border: 1px solid var(--line); border-top: 0;
  border-radius: 0 0 .25rem .25rem; print-color-adjust: exact; -webkit-print-color-adjust: exact; }
.chart .bar { stroke: #0006; stroke-width: .5; }
.chart .aim { fill: transparent; }
.chart g:hover .aim { fill: #0001; }
.chart .grid { stroke: #0002; }
.chart text { fill: #444; font-size: 10px; font-family: inherit; }
.chart .number { text-anchor: middle; }
.broken { padding: 1rem; border: 1px dashed var(--alert); border-radius: .25rem; color: var(--alert);
  overflow-wrap: anywhere; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; font-variant-numeric: tabular-nums; font-size: .9rem; }
th, td { padding: .18rem .55rem; text-align: right; border-bottom: 1px solid var(--line); white-space: nowrap; }
thead th { vertical-align: bottom; }
th.name { text-align: left; white-space: normal; overflow-wrap: break-word; font-weight: 500; }
.inks { width: 100%; }
.inks label { cursor: pointer; display: flex; align-items: center; gap: .4em; }
.inks input { margin: 0; flex: none; }
.inks tfoot th { font-weight: 600; }
.inks tfoot .soft { font-weight: 400; }
.inks .switch td { border: 0; padding: .6rem 0 0; }
.inks .meter { width: 34%; }
.inks svg { display: block; width: 100%; height: .7rem; }
.inks rect { stroke: #8888; }
.inks .track { fill: var(--track); }
@media (max-width: 60rem) { .overview { grid-template-columns: minmax(0, 1fr); } }
@media (max-width: 38rem) { .chart .minor { display: none; } body { font-size: 15px; }
  dl { grid-template-columns: minmax(0, 1fr); } dd { margin-bottom: .4rem; } }
@page { margin: 12mm; }
@media print {
  :root { --page: #fff; --panel: #fff; --text: #000; --soft: #444; --line: #bbb; --paper: #fff; --alert: #900;
    --alert-panel: #fff; }
  body { max-width: none; padding: 0; font-size: 10pt; }
  .sheet { border: 0; padding: 0; break-before: page; }
  .sheet:first-of-type { break-before: auto; }
  .overview { grid-template-columns: minmax(0, 1fr); }
  figure { max-width: calc(215mm * var(--ratio)); }
  .separations { grid-template-columns: 1fr 1fr; }
  .large, .large:target, .switch { display: none; }
  .separations .minor { display: none; }
  .inks { break-inside: avoid; }
  nav { display: none; }
  h2, h3, h4 { break-after: avoid; }
  thead { display: table-header-group; }
  tr { break-inside: avoid; }
}
)";
    }
}

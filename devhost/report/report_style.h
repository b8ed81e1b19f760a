#pragma once

// The style of the report's page: on a screen, on a telephone, on paper.

#include <string_view>

namespace pxtarvo::devhost {

inline constexpr std::string_view reportStyle =
    R"(:root { --tinta: #1d2733; --tenue: #5c6975; --linea: #d8dee4; --sube: #2f6f9f; --baja: #b5532a; --antes: #9aa7b3; }
* { box-sizing: border-box; }
body { margin: 0; background: #f4f6f8; color: var(--tinta); font: 16px/1.45 system-ui, "Segoe UI", sans-serif; }
main { max-width: 62rem; margin: 0 auto; padding: 1.5rem 1rem 3rem; }
header, section { background: #fff; border: 1px solid var(--linea); border-radius: 6px; padding: 1rem 1.25rem; margin-bottom: 1rem; }
h1 { font-size: 1.5rem; margin: 0 0 .5rem; }
h2, summary { font-size: 1.1rem; font-weight: 600; margin: 0 0 .6rem; }
summary { cursor: pointer; margin: 0; }
details[open] summary { margin-bottom: .6rem; }
p { margin: .3rem 0; }
.veredicto { font-size: 1.2rem; font-weight: 600; padding: .6rem .8rem; border-left: 6px solid; }
.bien { background: #e8f4ea; border-color: #2e7d32; }
.mal { background: #fbeae5; border-color: #b3261e; }
.pie { color: var(--tenue); font-size: .9rem; overflow-wrap: anywhere; }
dl { display: grid; grid-template-columns: max-content 1fr; gap: .2rem 1rem; margin: 0; }
dt { color: var(--tenue); }
dd { margin: 0; overflow-wrap: anywhere; }
.tabla { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; }
th, td { text-align: left; padding: .25rem .6rem; border-bottom: 1px solid var(--linea); vertical-align: top; }
th { color: var(--tenue); font-weight: 600; }
td { white-space: pre-wrap; }
.tabla td:first-child { white-space: pre; }
.totales td { padding-right: 1.5rem; }
.n { text-align: right; white-space: nowrap; font-variant-numeric: tabular-nums; }
.totales { width: auto; }
svg { width: 100%; height: auto; max-width: 44rem; display: block; }
svg text { font-size: 12px; fill: var(--tinta); }
.sube { fill: var(--sube); } .baja { fill: var(--baja); } .antes { fill: var(--antes); }
ul { margin: 0; padding-left: 1.2rem; }
li { white-space: pre-wrap; }
@media (max-width: 30rem) {
  body { font-size: 15px; }
  main { padding: .5rem .5rem 2rem; }
  header, section { padding: .75rem; }
  dl { grid-template-columns: 1fr; gap: 0; }
  dd { margin-bottom: .4rem; }
  th, td { padding: .2rem .35rem; }
  svg text { font-size: 17px; }
}
@page { size: A4; margin: 15mm; }
@media print {
  body { background: #fff; font-size: 10pt; }
  main { padding: 0; max-width: none; }
  header, section { border: 0; padding: 0; margin-bottom: 6mm; }
  .veredicto { border: 1px solid; border-left-width: 6px; }
  h2, summary { break-after: avoid; }
  tr, svg { break-inside: avoid; }
  thead { display: table-header-group; }
}
)";

}  // namespace pxtarvo::devhost

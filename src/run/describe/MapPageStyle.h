#pragma once

namespace halvane {

inline constexpr const char* sMapPageStyle = R"(
:root{color-scheme:light dark;--back:#fff;--text:#1b1f24;--soft:#57606a;--line:#d0d7de;--panel:#f6f8fa;--link:#0a58ca;--bad:#b42318;
--c0:#1f6fb4;--c1:#b8541a;--c2:#2b7a3d;--c3:#8a3ea8;--c4:#a3261f;--c5:#0f7c7c;--c6:#7a6410;--c7:#c02d74}
@media(prefers-color-scheme:dark){:root{--back:#0f1419;--text:#e6e9ed;--soft:#a2abb5;--line:#38424d;--panel:#182028;--link:#7ab7ff;--bad:#ff8f85;
--c0:#6db3f2;--c1:#f2a06d;--c2:#7bd08c;--c3:#d39bf0;--c4:#ff8f85;--c5:#5fd3d3;--c6:#e0c65c;--c7:#ff8fc2}}
*{box-sizing:border-box}
body{margin:0;background:var(--back);color:var(--text);font:16px/1.5 system-ui,sans-serif;overflow-wrap:anywhere}
a{color:var(--link)}
:focus-visible{outline:3px solid var(--link);outline-offset:2px}
.skip{position:absolute;left:-999em}.skip:focus{left:1em;top:.5em;background:var(--back);padding:.3em .6em;z-index:2}
header,main,footer{max-width:78rem;margin:0 auto;padding:0 1rem}
header{padding-top:1rem}
h1{font-size:1.7rem;margin:.2em 0}h2{scroll-margin-top:4rem;font-size:1.35rem;margin:2em 0 .5em;border-bottom:2px solid var(--line)}h3{font-size:1.1rem;margin:0 0 .4em}
.soft,caption,figcaption{color:var(--soft);font-size:.9rem}
.bad{color:var(--bad)}
.find{position:sticky;top:0;z-index:1;background:var(--back);padding:.6rem 0;display:flex;flex-wrap:wrap;gap:.5rem;align-items:center}
.find[hidden]{display:none}
.find input{flex:1 1 14rem;min-width:0;font:inherit;padding:.4em .6em;border:1px solid var(--soft);border-radius:6px;background:var(--back);color:var(--text)}
nav ul{display:flex;flex-wrap:wrap;gap:.3rem 1rem;list-style:none;padding:0;margin:.5rem 0}
article{border:1px solid var(--line);border-radius:8px;background:var(--panel);padding:1rem;margin:1rem 0;scroll-margin-top:4rem}
.wide{display:grid;gap:1rem}
@media(min-width:60rem){.wide{grid-template-columns:minmax(0,2fr) minmax(14rem,1fr)}}
.scroll{overflow-x:auto}
table{border-collapse:collapse;width:100%;font-size:.9rem}
caption{text-align:left}
th,td{text-align:left;vertical-align:top;padding:.3em .7em .3em 0;border-bottom:1px solid var(--line);overflow-wrap:normal}
dl{display:grid;grid-template-columns:minmax(7rem,max-content) minmax(0,1fr);gap:.2rem 1rem;margin:.5rem 0}
dt{color:var(--soft)}dd{margin:0}
figure{margin:0}
svg{display:block;width:100%;height:auto;background:var(--back);border:1px solid var(--line);border-radius:6px}
.layers svg{max-height:36rem}.sketch svg{max-height:16rem}
svg .extent{fill:none;stroke:var(--c);stroke-dasharray:4 4;stroke-width:1}
svg path{vector-effect:non-scaling-stroke;fill:var(--c);fill-opacity:.18;stroke:var(--c);stroke-width:1.4;stroke-linejoin:round}
svg path.line{fill:none}
svg circle{fill:var(--c)}
.diagram{min-width:34rem;max-width:44rem}
.diagram .edge{fill:none;stroke:var(--soft)}
.diagram rect{fill:var(--panel);stroke:var(--soft)}
.diagram text{fill:var(--text);font-size:13px;text-anchor:middle}
.diagram .small{text-anchor:start;font-size:11px;fill:var(--soft)}
.c0{--c:var(--c0)}.c1{--c:var(--c1)}.c2{--c:var(--c2)}.c3{--c:var(--c3)}.c4{--c:var(--c4)}.c5{--c:var(--c5)}.c6{--c:var(--c6)}.c7{--c:var(--c7)}
.legend{list-style:none;padding:0;display:flex;flex-wrap:wrap;gap:.2rem 1rem;margin:.5rem 0}
.legend span{display:inline-block;width:.9em;height:.9em;border-radius:3px;background:var(--c);margin-right:.4em}
footer{color:var(--soft);font-size:.9rem;padding-bottom:2rem}
@media print{.find,nav{display:none}}
)";

/// Hides what does not hold all words of the search; of what is shown by its rows alone, the other rows.
inline constexpr const char* sMapPageScript = R"(
(function(){
var box=document.querySelector('.find'),input=document.getElementById('q'),found=document.getElementById('found');
var things=Array.from(document.querySelectorAll('.thing'));
box.hidden=false;
function has(text,words){return words.every(function(w){return text.indexOf(w)>=0})}
function search(){
var words=input.value.toLowerCase().split(/\s+/).filter(Boolean),shown=0;
things.forEach(function(thing){
var title=thing.querySelector('h3').textContent.toLowerCase(),whole=has(title,words);
var ok=has(thing.textContent.toLowerCase(),words);
thing.hidden=!ok;if(ok)shown++;
thing.querySelectorAll('tbody tr').forEach(function(row){row.hidden=false});
if(ok&&!whole)thing.querySelectorAll('table').forEach(function(table){
var rows=Array.from(table.tBodies[0].rows),hits=rows.filter(function(row){return has(title+' '+row.textContent.toLowerCase(),words)});
if(hits.length)rows.forEach(function(row){row.hidden=hits.indexOf(row)<0})})});
found.textContent=words.length?shown+' of '+things.length+' shown':''}
input.addEventListener('input',search);
document.addEventListener('keydown',function(e){
if(e.key==='/'&&document.activeElement!==input){e.preventDefault();input.focus()}
if(e.key==='Escape'&&document.activeElement===input){input.value='';search()}});
search()})();
)";

} // namespace halvane

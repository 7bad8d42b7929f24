// live_page.cpp: the live panel's page: one HTML file with its style and
// script, no build step and nothing fetched from outside.
//
// It listens to /events (server-sent events: each message has the windows,
// the places of their gauges, the aircraft, the flown path and the route,
// and the pictures that changed since the last message), sends clicks and
// the PC keyboard to /command as script lines, and reads nothing else.
#include "live_server.h"

namespace orbsim {

const char* LivePageHtml() {
    return R"PAGE(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>orb1 live panel</title>
<style>
  body { margin: 0; background: #1b1d20; color: #d8dde3; font: 13px/1.35 sans-serif; display: flex; }
  #panel { flex: 1; padding: 10px; display: flex; flex-wrap: wrap; align-items: flex-start; gap: 10px; }
  .window { background: #2a2d31; border: 1px solid #44484e; border-radius: 4px; }
  .window > h2 { margin: 0; padding: 3px 8px; font-size: 12px; font-weight: normal; color: #9aa3ad;
                 border-bottom: 1px solid #44484e; }
  .window > div { position: relative; }
  .gauge { position: absolute; image-rendering: auto; cursor: crosshair; }
  #side { width: 300px; padding: 10px; background: #24272b; border-left: 1px solid #44484e; min-height: 100vh; }
  #side h3 { margin: 12px 0 4px; font-size: 12px; color: #9aa3ad; text-transform: uppercase; }
  table { border-collapse: collapse; width: 100%; }
  td { padding: 1px 4px; } td.v { text-align: right; font-family: monospace; }
  input[type=number] { width: 80px; background: #15171a; color: #d8dde3; border: 1px solid #44484e; }
  #message { min-height: 2.7em; color: #f0b060; font-family: monospace; white-space: pre-wrap; }
  #map { background: #0b0c0e; border: 1px solid #44484e; }
  label { display: block; }
</style>
</head>
<body>
<div id="panel"></div>
<div id="side">
  <div><b>orb1 live panel</b> <span id="rate">0</span> frames/s</div>
  <div id="message"></div>
  <h3>Aircraft</h3>
  <table id="aircraft"></table>
  <h3>Autopilot and weather</h3>
  <table>
    <tr><td>Heading bug</td><td><input type="number" data-field="hdg_bug" min="0" max="360"></td></tr>
    <tr><td>Altitude</td><td><input type="number" data-field="ap_alt" step="100"></td></tr>
    <tr><td>Speed</td><td><input type="number" data-field="ap_spd"></td></tr>
    <tr><td>Vertical speed</td><td><input type="number" data-field="ap_vs" step="100"></td></tr>
    <tr><td>Wind from</td><td><input type="number" data-field="wind_dir" min="0" max="360"></td></tr>
    <tr><td>Wind speed</td><td><input type="number" data-field="wind_speed" min="0"></td></tr>
    <tr><td>Simulation rate</td><td><input type="number" data-field="rate" min="0.25" max="16" step="any"></td></tr>
  </table>
  <label><input type="checkbox" data-flag="ap_hdg_hold"> Heading hold</label>
  <label><input type="checkbox" data-flag="ap_alt_hold"> Altitude hold</label>
  <label><input type="checkbox" data-flag="ap_spd_hold"> Speed hold</label>
  <label><input type="checkbox" data-flag="paused"> Paused</label>
  <h3>Windows</h3>
  <div id="windows"></div>
  <h3>Map</h3>
  <canvas id="map" width="280" height="280"></canvas>
</div>
<script>
"use strict";
const panel = document.getElementById("panel");
const message = document.getElementById("message");
const images = {};     // gauge id -> <img>
const windows = {};    // window ident -> its box
let frames = 0, lastHead = null;
window.orbFrames = 0;  // frames received, read by the browser test

// Commands go one after the other, in the order the pilot gave them.
let chain = Promise.resolve();
window.orbPending = 0;  // commands not yet answered, read by the browser test
function send(line) {
  window.orbPending++;
  chain = chain.then(() => fetch("/command", {method: "POST", body: line}))
    .then(r => r.text().then(t => { message.textContent = r.ok ? "" : t; }))
    .catch(() => { message.textContent = "orbsim is not answering"; })
    .finally(() => { window.orbPending--; });
  return chain;
}

// A click at the image's pixel, scaled back to the gauge's bezel pixel.
function onGaugeClick(event, gauge, button) {
  const box = event.target.getBoundingClientRect();
  const x = Math.floor((event.clientX - box.left) * gauge.width / box.width);
  const y = Math.floor((event.clientY - box.top) * gauge.height / box.height);
  send("click " + gauge.id + " " + x + " " + y + (button ? " " + button : ""));
  event.preventDefault();
}

function layOut(head) {
  for (const w of head.windows) {
    let box = windows[w.ident];
    if (!box) {
      box = document.createElement("div");
      box.className = "window";
      box.innerHTML = "<h2></h2><div></div>";
      box.querySelector("h2").textContent = w.title + " (" + w.ident + ")";
      panel.appendChild(box);
      windows[w.ident] = box;
      const toggle = document.createElement("label");
      toggle.innerHTML = "<input type=checkbox> ";
      toggle.appendChild(document.createTextNode(w.title + " (" + w.ident + ")"));
      toggle.querySelector("input").addEventListener("change", e =>
        send("window " + w.ident + (e.target.checked ? " open" : " close")));
      document.getElementById("windows").appendChild(toggle);
      box.toggle = toggle.querySelector("input");
    }
    box.style.display = w.visible ? "" : "none";
    box.toggle.checked = w.visible;
    let right = 0, bottom = 0;
    const inner = box.querySelector("div");
    for (const g of w.gauges) {
      right = Math.max(right, g.x + g.w);
      bottom = Math.max(bottom, g.y + g.h);
      let img = images[g.id];
      if (!img) {
        img = document.createElement("img");
        img.className = "gauge";
        img.dataset.gauge = g.id;
        img.draggable = false;
        img.addEventListener("click", e => onGaugeClick(e, img.gauge));
        img.addEventListener("contextmenu", e => onGaugeClick(e, img.gauge, "right"));
        inner.appendChild(img);
        images[g.id] = img;
      }
      img.gauge = g;
      Object.assign(img.style, {left: g.x + "px", top: g.y + "px", width: g.w + "px", height: g.h + "px"});
    }
    inner.style.width = right + "px";
    inner.style.height = bottom + "px";
  }
}

function showAircraft(a) {
  const rows = [["Latitude", a.lat?.toFixed(4)], ["Longitude", a.lon?.toFixed(4)], ["Altitude ft", a.alt?.toFixed(0)],
                ["Heading", a.hdg?.toFixed(0)], ["IAS kt", a.ias?.toFixed(0)], ["GS kt", a.gs?.toFixed(0)],
                ["V/S ft/min", a.vs?.toFixed(0)], ["Time s", a.time?.toFixed(0)]];
  document.getElementById("aircraft").innerHTML =
    rows.map(r => "<tr><td>" + r[0] + "</td><td class=v>" + (r[1] ?? "-") + "</td></tr>").join("");
  for (const input of document.querySelectorAll("input[data-field]"))
    if (document.activeElement !== input && a[input.dataset.field] !== undefined)
      input.value = Math.round(a[input.dataset.field] * 100) / 100;
  for (const box of document.querySelectorAll("input[data-flag]"))
    if (document.activeElement !== box && a[box.dataset.flag] !== undefined) box.checked = !!a[box.dataset.flag];
}

// North up, the aircraft in the middle, scaled so the route and the path fit.
function drawMap(head) {
  const canvas = document.getElementById("map"), c = canvas.getContext("2d");
  const a = head.aircraft;
  c.fillStyle = "#0b0c0e"; c.fillRect(0, 0, canvas.width, canvas.height);
  if (a.lat === undefined) return;
  const cosLat = Math.cos(a.lat * Math.PI / 180);
  let reach = 0.05;
  for (const p of head.route.concat(head.track))
    reach = Math.max(reach, Math.abs(p[0] - a.lat), Math.abs(p[1] - a.lon) * cosLat);
  const scale = (canvas.width / 2 - 14) / reach;
  const at = p => [canvas.width / 2 + (p[1] - a.lon) * cosLat * scale, canvas.height / 2 - (p[0] - a.lat) * scale];
  c.strokeStyle = "#e050e0"; c.fillStyle = "#e050e0"; c.lineWidth = 1.5; c.font = "10px sans-serif";
  c.beginPath();
  head.route.forEach((p, i) => { const [x, y] = at(p); i ? c.lineTo(x, y) : c.moveTo(x, y); });
  c.stroke();
  for (const p of head.route) { const [x, y] = at(p); c.fillText(p[2], x + 4, y - 4); }
  c.strokeStyle = "#40e040"; c.beginPath();
  head.track.forEach((p, i) => { const [x, y] = at(p); i ? c.lineTo(x, y) : c.moveTo(x, y); });
  c.stroke();
  const [x, y] = at([a.lat, a.lon]), h = (a.hdg || 0) * Math.PI / 180;
  c.save(); c.translate(x, y); c.rotate(h); c.fillStyle = "#ffffff";
  c.beginPath(); c.moveTo(0, -8); c.lineTo(5, 6); c.lineTo(-5, 6); c.closePath(); c.fill(); c.restore();
  c.fillStyle = "#9aa3ad"; c.fillText((reach * 60).toFixed(0) + " nm to the edge", 6, canvas.height - 6);
}

const events = new EventSource("/events");
events.onmessage = e => {
  const frame = JSON.parse(e.data);
  lastHead = frame.head;
  layOut(frame.head);
  for (const [id, png] of Object.entries(frame.pictures))
    if (images[id]) images[id].src = "data:image/png;base64," + png;
  showAircraft(frame.head.aircraft);
  drawMap(frame.head);
  frames++; window.orbFrames++;
};
events.onerror = () => { message.textContent = "orbsim is not answering"; };
setInterval(() => { document.getElementById("rate").textContent = frames; frames = 0; }, 1000);

for (const input of document.querySelectorAll("input[data-field]"))
  input.addEventListener("change", () => send("aircraft " + input.dataset.field + "=" + input.value));
for (const box of document.querySelectorAll("input[data-flag]"))
  box.addEventListener("change", () => send("aircraft " + box.dataset.flag + "=" + (box.checked ? 1 : 0)));

// The PC keyboard goes to the MCU's keyboard entry, as a pilot types.
const namedKeys = {Enter: "{ENTER}", Backspace: "{BACKSPACE}", ArrowUp: "{UP}", ArrowDown: "{DOWN}",
                   PageUp: "{PGUP}", PageDown: "{PGDN}", " ": "{SPACE}", Escape: "{ESC}"};
document.addEventListener("keydown", e => {
  if (e.target.tagName === "INPUT" || e.ctrlKey || e.altKey || e.metaKey) return;
  let text = namedKeys[e.key];
  if (!text && /^[a-zA-Z0-9]$/.test(e.key)) text = e.key.toUpperCase();
  if (!text) return;
  send("keyboard " + text);
  e.preventDefault();
});
</script>
</body>
</html>
)PAGE";
}

}  // namespace orbsim

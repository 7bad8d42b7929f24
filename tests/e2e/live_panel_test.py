#!/usr/bin/env python3
"""The live panel in a real browser.

Starts `orbsim --serve` on a scratch simulator folder and a free port, with
the aircraft where `./orb live` puts it (the folder's live.orbsim), drives
headless Chromium through ChromeDriver (the W3C WebDriver protocol, spoken
here with the standard library) to load the page, clicks the CDU's keys on
the page to enter the company route KSEAKOLM and EXEC it, clicks LNAV, and
checks through orbsim's own state that the route is active and LNAV engaged.
Prints the frames a second that reached the page, and writes a screenshot.

    live_panel_test.py ORBSIM SIM_DIR OUT_DIR

Exit 0 when every check holds; every process it started is stopped.
"""
import base64
import json
import os
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

CHROMIUM = "/usr/bin/chromium"
CHROMEDRIVER = "/usr/bin/chromedriver"


def fail(message):
    print("live_panel_test: " + message, file=sys.stderr)
    sys.exit(1)


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


def http(method, url, body=None, timeout=30):
    data = None if body is None else (body if isinstance(body, bytes) else json.dumps(body).encode())
    request = urllib.request.Request(url, data=data, method=method)
    if body is not None and not isinstance(body, bytes):
        request.add_header("Content-Type", "application/json")
    try:
        with urllib.request.urlopen(request, timeout=timeout) as response:
            return response.status, response.read()
    except urllib.error.HTTPError as error:
        return error.code, error.read()


class Browser:
    """One WebDriver session on headless Chromium."""

    def __init__(self, driver_url, profile_dir):
        self.url = driver_url
        status, body = http("POST", driver_url + "/session", {"capabilities": {"alwaysMatch": {
            "browserName": "chrome",
            "goog:chromeOptions": {"binary": CHROMIUM, "args": [
                "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                "--disable-background-networking", "--disable-component-update", "--disable-sync",
                "--user-data-dir=" + profile_dir, "--window-size=1700,1300"]}}}})
        if status != 200:
            fail("no browser session: " + body.decode(errors="replace")[:300])
        self.session = driver_url + "/session/" + json.loads(body)["value"]["sessionId"]

    def call(self, method, path, body=None):
        status, answer = http(method, self.session + path, body)
        value = json.loads(answer)["value"] if answer else None
        if status != 200:
            fail("WebDriver %s %s: %s" % (method, path, json.dumps(value)[:300]))
        return value

    def script(self, source, *args):
        return self.call("POST", "/execute/sync", {"script": source, "args": list(args)})

    def element(self, css, wait=20.0):
        deadline = time.time() + wait
        while time.time() < deadline:
            status, answer = http("POST", self.session + "/element", {"using": "css selector", "value": css})
            if status == 200:
                element = json.loads(answer)["value"]
                ref = next(iter(element.values()))
                if self.call("GET", "/element/%s/displayed" % ref):
                    return element
            time.sleep(0.2)
        fail("nothing shown on the page for " + css)

    def click_at(self, element, x, y):
        """A mouse click at offset (x, y) from the element's centre, in CSS pixels."""
        self.call("POST", "/actions", {"actions": [{"type": "pointer", "id": "mouse",
                                                    "parameters": {"pointerType": "mouse"}, "actions": [
            {"type": "pointerMove", "origin": element, "x": int(x), "y": int(y), "duration": 0},
            {"type": "pointerDown", "button": 0}, {"type": "pointerUp", "button": 0}]}]})

    def close(self):
        http("DELETE", self.session)


def main():
    if len(sys.argv) != 4:
        fail("usage: live_panel_test.py ORBSIM SIM_DIR OUT_DIR")
    orbsim, sim_dir, out_dir = sys.argv[1:]
    for program in (CHROMIUM, CHROMEDRIVER):
        if not os.access(program, os.X_OK):
            fail(program + " is missing: ./orb setup installs it")
    os.makedirs(out_dir, exist_ok=True)
    profile_dir = tempfile.mkdtemp(prefix="orb-live-chromium-")
    started = []
    try:
        # 1. orbsim serves the sample panel; its first line names the address.
        sim = subprocess.Popen([orbsim, "--sim", sim_dir, "--out", out_dir, "--serve", "panels/twinjet.cfg",
                                "--port", "0", "--start", os.path.join(sim_dir, "live.orbsim")], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        started.append(sim)
        line = sim.stdout.readline()
        if "http://" not in line:
            fail("orbsim did not start serving: " + line + sim.stderr.read()[:500])
        page_url = line[line.index("http://"):].strip().rstrip("/")

        def value(what):
            status, body = http("GET", page_url + "/value?what=" + urllib.request.quote(what))
            if status != 200:
                fail("orbsim has no value " + what + ": " + body.decode(errors="replace"))
            return body.decode().strip()

        def screen(gauge):
            status, body = http("POST", page_url + "/command", ("print screen " + gauge).encode())
            return body.decode(errors="replace")

        # 2. ChromeDriver and a session.
        driver_port = free_port()
        driver = subprocess.Popen([CHROMEDRIVER, "--port=%d" % driver_port], stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL)
        started.append(driver)
        driver_url = "http://127.0.0.1:%d" % driver_port
        for _ in range(100):
            try:
                if http("GET", driver_url + "/status", timeout=2)[0] == 200:
                    break
            except OSError:
                pass
            time.sleep(0.1)
        browser = Browser(driver_url, profile_dir)
        browser.call("POST", "/url", {"url": page_url + "/"})

        # 3. A click on a gauge at a bezel pixel, through the page's picture of it.
        def click(gauge, x, y):
            element = browser.element('img[data-gauge="%s"]' % gauge)
            shown = browser.script("const g = arguments[0].gauge, r = arguments[0].getBoundingClientRect();"
                                   "return [g.width, g.height, r.width, r.height];", element)
            width, height, css_w, css_h = shown
            browser.click_at(element, (x + 0.5) * css_w / width - css_w / 2, (y + 0.5) * css_h / height - css_h / 2)
            for _ in range(200):
                if browser.script("return window.orbPending;") == 0:
                    return
                time.sleep(0.05)
            fail("the page's command for %s did not come back" % gauge)

        status, body = http("GET", page_url + "/keys?gauge=SMITHS_FMS")
        keys = json.loads(body)
        if "EXEC" not in keys:
            fail("orbsim lists no CDU keys")

        def key(name):
            x, y, w, h = keys[name]
            click("SMITHS_FMS#1", x + w // 2, y + h // 2)

        # 4. The pilot's clicks: open the CDU, enter the company route, EXEC, LNAV.
        click("FMS_OPEN#1", 25, 25)
        key("RTE")
        for letter in "KSEAKOLM":
            key(letter)
        key("LSK2L")
        key("LSK6R")
        key("EXEC")
        click("LNAV#1", 25, 25)
        time.sleep(1.0)

        # 5. orbsim's own state: the route is active and LNAV engaged.
        text = screen("SMITHS_FMS")
        if "KOLM" not in text or "ACT" not in text:
            fail("the route is not active on the CDU:\n" + text)
        if value("layer.LNAV.1.hidden") != "0":
            fail("LNAV's lamp is not lit")

        # 6. The side panel flies it: 250 kt and the speed hold, set on the page.
        speed = browser.element('input[data-field="ap_spd"]')
        speed_ref = next(iter(speed.values()))
        browser.call("POST", "/element/%s/clear" % speed_ref, {})
        browser.call("POST", "/element/%s/value" % speed_ref, {"text": "250\n"})
        browser.script("arguments[0].dispatchEvent(new Event('change'));", speed)
        hold = browser.element('input[data-flag="ap_spd_hold"]')
        browser.call("POST", "/element/%s/click" % next(iter(hold.values())), {})
        for _ in range(200):
            if browser.script("return window.orbPending;") == 0:
                break
            time.sleep(0.05)
        if float(value("aircraft.ap_spd")) != 250 or value("aircraft.ap_spd_hold") != "1":
            fail("the side panel did not set the speed and its hold")
        time.sleep(6.0)
        if float(value("aircraft.ias")) < 20:
            fail("the aircraft did not start its take-off roll: %s kt" % value("aircraft.ias"))

        # 7. The pictures decode to the gauges' own sizes in the browser.
        nd = browser.element('img[data-gauge="HW_B737_ND#1"]')
        decoded = browser.script("const i = arguments[0]; return [i.naturalWidth, i.naturalHeight, i.gauge.width,"
                                 " i.gauge.height];", nd)
        if decoded[0] != decoded[2] or decoded[1] != decoded[3] or decoded[0] == 0:
            fail("the ND's picture did not decode to its size: %s" % decoded)

        # 8. Bad requests are refused and orbsim keeps flying.
        for body in (b"run 600", b"click \x01 1 2", b"expect aircraft.alt > 0", b"shot HW_B737_ND x.png",
                     bytes(range(256)) * 20, b"click HW_B737_ND#1 1e99 5"):
            status, answer = http("POST", page_url + "/command", body)
            if status < 400:
                fail("orbsim took %r: %s" % (body[:30], answer[:100]))
        if http("GET", page_url + "/value?what=no.such.thing")[0] != 400:
            fail("an unknown value was answered")
        if sim.poll() is not None:
            fail("orbsim stopped on a bad request")

        # 9. Frames reaching the page, and a picture of it.
        first = browser.script("return window.orbFrames;")
        time.sleep(4.0)
        rate = (browser.script("return window.orbFrames;") - first) / 4.0
        print("live panel: %.1f frames a second reached the page" % rate)
        shot = base64.b64decode(browser.call("GET", "/screenshot"))
        with open(os.path.join(out_dir, "live_panel.png"), "wb") as f:
            f.write(shot)
        if rate < 5:
            fail("the page received %.1f frames a second: the stream is stalling" % rate)
        browser.close()
    finally:
        for process in reversed(started):
            process.send_signal(signal.SIGTERM)
        for process in reversed(started):
            try:
                code = process.wait(timeout=15)
            except subprocess.TimeoutExpired:
                process.kill()
                code = process.wait()
        shutil.rmtree(profile_dir, ignore_errors=True)
    if started and started[0].returncode != 0:
        fail("orbsim ended with %d: %s" % (started[0].returncode, started[0].stderr.read()[:500]))
    print("live panel: route entered and LNAV engaged through the page")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""The page of `bgpcomm report` in a browser: its figures are those of other commands, its tables sort, it is
readable in the dark and where it is narrow, and what files hold stays text.

Usage: run.py TOOL
"""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
except ImportError:
    # Debian's modules are those of Debian's Python.
    if sys.executable != "/usr/bin/python3" and os.path.exists("/usr/lib/python3/dist-packages/selenium"):
        os.execv("/usr/bin/python3", ["/usr/bin/python3", *sys.argv])
    print("python3-selenium is not installed")
    sys.exit(77)
if not shutil.which("chromedriver"):
    print("chromium-driver is not installed")
    sys.exit(77)

tool = sys.argv[1]
sample = "samples/rib.bird.mrt.gz"
faults = []


def expect(holds, what):
    if not holds:
        faults.append(what)


def said(*arguments):
    return subprocess.run([tool, *arguments], check=True, capture_output=True).stdout


def lines(*arguments):
    return [json.loads(line) for line in said(*arguments, sample, "--json").splitlines()]


def start_browser():
    options = webdriver.ChromeOptions()
    options.binary_location = shutil.which("chromium")
    for flag in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--disable-gpu"):
        options.add_argument(flag)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(options=options, service=Service(shutil.which("chromedriver")))


def emulate(width=1200, scheme="light"):
    browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                            {"width": width, "height": 900, "deviceScaleFactor": 1, "mobile": False})
    browser.execute_cdp_cmd("Emulation.setEmulatedMedia",
                            {"features": [{"name": "prefers-color-scheme", "value": scheme},
                                          {"name": "prefers-reduced-motion", "value": "reduce"}]})


def table(section):
    """The rows of a section's table, each by the heads of its columns."""
    return browser.execute_script("""
        const table = document.querySelector(`#${arguments[0]} table`);
        if (!table) return [];
        const heads = Array.from(table.tHead.rows[0].cells, (cell) => cell.textContent);
        return Array.from(table.tBodies[0].rows, (row) =>
            Object.fromEntries(Array.from(row.cells, (cell, i) => [heads[i], cell.textContent])));
        """, section)


def number(text):
    return float(text.replace(",", "").rstrip("%×")) if text not in ("?", "-") else float("-inf")


def check_figures():
    total = json.loads(said("summary", "--json", "--top", "0", sample))["total"]
    titles = {"standard": "standard", "extended": "extended", "ipv6Extended": "IPv6 extended", "large": "large"}
    sharing = {row["List type"]: row for row in table("sharing")}
    expect(set(sharing) == set(titles.values()), f"list types {set(sharing)}")
    for key, title in titles.items():
        for head, figure in (("Attributes", "attributes"), ("Communities", "communities"),
                             ("Distinct values", "distinctValues"), ("Distinct lists", "distinctLists")):
            expect(number(sharing[title][head]) == total[key][figure], f"{title}: {head}")
        expect(number(sharing[title]["Octets, unshared"]) == total["octets"][key]["unshared"], f"{title}: octets")
    used = {(row["List type"], row["Octets"], int(number(row["Paths"]))) for row in table("communities")}
    expect(used == {(titles[key], use["octets"], use["paths"])
                    for key in titles for use in total["mostUsed"][key]}, "most used communities")
    kinds = table("kinds")
    for row in lines("top", "--by", "kind", "--limit", "0"):
        if row.get("kind", "unknown") != "unknown":  # one line has totals
            expect([(number(one["Paths"]), number(one["Distinct lists"]))
                    for one in kinds if one["Kind"] == row["kind"]] == [(row["paths"], row["lists"])],
                   f"kind {row['kind']}")
    types = {one["Type"]: int(number(one["Distinct values"]))
             for one in kinds if one["List type"] == "extended"}
    expect(types == total["extended"]["types"], "types")
    sets = [row for row in table("route-targets") if row["List type"] == "extended"]
    expect(len(sets) == total["extended"]["distinctRouteTargetSets"], f"{len(sets)} route-target sets")
    only = "route-target-as2:64600:100"
    with_only = sum([value for value in path["extended"] if value.startswith("route-target-")] == [only]
                    for path in lines("paths", "--rt", only))
    expect([number(row["Paths"]) for row in sets if row["Route targets"] == only] == [with_only], "users of a set")
    peers = {f"{row['Peer']} AS{row['AS']}": (number(row["Paths"]), number(row["Distinct lists"]))
             for row in table("peers")}
    expect(peers == {row["peer"]: (row["paths"], row["lists"])
                     for row in lines("top", "--by", "peer", "--limit", "0") if "peer" in row}, f"peers {peers}")


def check_sorting():
    heads = browser.find_elements(By.CSS_SELECTOR, "thead th")
    expect(len(heads) > 30, f"{len(heads)} columns")
    for i, head in enumerate(heads):
        button = head.find_element(By.TAG_NAME, "button")
        orders = set()
        for press in (button.click, lambda: button.send_keys(Keys.ENTER)):
            press()
            order, form, column = browser.execute_script("""
                const head = arguments[0], rows = head.closest("table").tBodies[0].rows;
                return [head.ariaSort, head.className, Array.from(rows, (row) => row.cells[head.cellIndex].textContent)];
                """, head)
            orders.add(order)
            if form == "number":
                column = [number(text) for text in column]
                expect(column == sorted(column, reverse=order == "descending"), f"column {i}: {order}")
            elif order == "ascending":
                first = column
            else:
                expect(sorted(column) == sorted(first), f"column {i} lost rows")
                expect(len(set(column)) < 2 or column != first, f"column {i} does not sort")
        expect(orders == {"ascending", "descending"}, f"column {i}: {orders}")


CONTRASTS = """
    const channel = (c) => (c /= 255) <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4;
    const parse = (text) => text.match(/[0-9.]+/g).map(Number);
    const light = ([r, g, b]) => 0.2126 * channel(r) + 0.7152 * channel(g) + 0.0722 * channel(b);
    const ground = (element) => {
      for (; element; element = element.parentElement) {
        const colour = parse(getComputedStyle(element).backgroundColor);
        if (colour.length === 3) return light(colour);
      }
      return 1;
    };
    const found = [];
    for (const element of document.body.querySelectorAll("*")) {
      const style = getComputedStyle(element);
      const own = Array.from(element.childNodes).some((node) => node.nodeType === 3 && node.data.trim());
      if (!own || !element.getClientRects().length) continue;
      const colour = element instanceof SVGElement ? style.fill : style.color;
      const [dark, bright] = [light(parse(colour)), ground(element)].sort((a, b) => a - b);
      found.push([(bright + 0.05) / (dark + 0.05), element.tagName + "." + element.getAttribute("class")]);
    }
    return [ground(document.body), found];
    """


def check_looks():
    grounds = {}
    for scheme in ("light", "dark"):
        emulate(scheme=scheme)
        grounds[scheme], contrasts = browser.execute_script(CONTRASTS)
        expect(len(contrasts) > 300, f"{len(contrasts)} texts")
        poor = {name: round(contrast, 2) for contrast, name in contrasts if contrast < 4.5}
        expect(not poor, f"contrast, {scheme}: {poor}")
    expect(grounds["light"] > 0.8 and grounds["dark"] < 0.05, f"brightness {grounds}")
    for width in (400, 1200):
        emulate(width=width)
        whole, boxes = browser.execute_script("""
            return [document.scrollingElement.scrollWidth, Array.from(document.querySelectorAll(".scroll"),
                (box) => [box.scrollWidth, box.clientWidth, box.getBoundingClientRect().right])];""")
        expect(whole <= width, f"{whole} wide at {width}")
        expect(len(boxes) >= 6 and all(right <= width for _, _, right in boxes), f"boxes at {width}: {boxes}")
        if width == 400:
            expect(any(inside > outside for inside, outside, _ in boxes), "no table scrolls by itself")
            labels = browser.execute_script("""
                return Array.from(document.querySelectorAll(".chart g"), (g) => {
                    const [label, value] = Array.from(g.querySelectorAll("text"), (text) => text.getBoundingClientRect());
                    return value.left - label.right;
                });""")
            expect(len(labels) > 20 and min(labels) >= 0, f"labels run into figures: {sorted(labels)[:3]}")
    emulate()


def check_charts():
    charts = browser.execute_script("""
        return Array.from(document.querySelectorAll("svg[role=img]"), (svg) =>
            [svg.getAttribute("aria-labelledby").split(" ").map((id) => document.getElementById(id).textContent),
             Array.from(svg.querySelectorAll(".bar, .less"), (bar) => bar.getBoundingClientRect().width)]);
        """)
    expect(len(charts) == 5, f"{len(charts)} charts")
    for (title, description), widths in charts:
        expect(title and description.count(";") == len(widths) - 1, f"chart {title}: {description}")
        expect(max(widths) > 300 and min(widths) >= 0, f"chart {title}: {widths}")


def load(page):
    browser.get(pathlib.Path(page).as_uri())
    messages = [entry for entry in browser.get_log("browser") if "favicon" not in entry["message"]]
    expect(not messages, f"console: {messages}")
    expect(browser.execute_script("return performance.getEntriesByType('resource').length") == 0, "it loads something")


with tempfile.TemporaryDirectory() as folder:
    os.environ["XDG_CONFIG_HOME"] = folder + "/none"
    page = folder + "/page.html"
    browser = start_browser()
    try:
        said("report", sample, "--top", "0", "-o", page)
        emulate()
        load(page)
        check_figures()
        check_charts()
        check_looks()
        check_sorting()

        # A name and a description that would be markup.
        markup = "</title></script><script>window.broken=1</script><img src=x onerror=window.broken=1>"
        hostile = folder + "/" + markup.replace("/", "\u2215") + "'\">&.mrt.gz"
        shutil.copy(sample, hostile)
        texts = folder + "/texts"
        pathlib.Path(texts).write_text("64600:100," + markup + "\n")
        said("report", hostile, "-o", page, "--describe", texts)
        load(page)
        expect(browser.execute_script("return window.broken") is None, "a file's text runs")
        expect(len(browser.find_elements(By.CSS_SELECTOR, "img, script")) == 1, "a file's text is markup")
        expect(browser.find_element(By.TAG_NAME, "h1").text == hostile.rpartition("/")[2], "the name is not as it is")
        expect(table("communities")[0]["Meaning"] == markup, "the description is not as it is")
    finally:
        browser.quit()

print("\n".join(faults) or "report: all holds")
sys.exit(bool(faults))

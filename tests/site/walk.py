"""Opens a built site in headless Chromium and follows every link of every page.

Usage: walk.py SITE_DIR

Begins at index.html; what the search box opens counts as linked to. On each page it takes the links, anchors,
pictures and frames that the browser has after the page's scripts ran, and what the console says. Files,
anchors and pictures have to be there, and pages have to be reached. Nothing is fetched from elsewhere:
links to other sites are counted only.
"""

import collections
import functools
import http.server
import os
import pathlib
import sys
import threading
import urllib.parse

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service

COLLECT = pathlib.Path(__file__).with_name("collect.js").read_text(encoding="utf-8")
SECONDS_A_PAGE = 60


class Handler(http.server.SimpleHTTPRequestHandler):
    protocol_version = "HTTP/1.1"  # one connection for many files

    def do_GET(self):
        if self.path != "/favicon.ico":  # a browser asks by itself, no page does
            return super().do_GET()
        self.send_response(204)
        self.end_headers()

    def log_message(self, *arguments):
        pass


class Site:
    """A folder, served on a port of its own."""

    def __init__(self, root):
        self.root = pathlib.Path(root).resolve()
        handler = functools.partial(Handler, directory=str(self.root))
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        self.address = "http://127.0.0.1:%d/" % self.server.server_address[1]

    def __enter__(self):
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *error):
        self.server.shutdown()
        self.server.server_close()

    def name(self, url):
        """The file that an address of this site names, and its anchor; none for other sites."""
        if not url.startswith(self.address):
            return None, ""
        path, _, anchor = url[len(self.address):].partition("#")
        path = urllib.parse.unquote(path.partition("?")[0])
        if path.endswith("/") or not path:
            path += "index.html"
        return path, urllib.parse.unquote(anchor)

    def has(self, name):
        return (self.root / name).is_file()

    def pages(self):
        return {str(path.relative_to(self.root)) for path in self.root.rglob("*.html")}


def browser():
    options = Options()
    options.page_load_strategy = "eager"
    for argument in ("--headless=new", "--disable-gpu", "--disable-dev-shm-usage",
                     "--disable-background-networking", "--no-first-run", "--no-proxy-server",
                     "--disable-features=BackForwardCache",
                     "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1"):
        options.add_argument(argument)
    if os.geteuid() == 0:
        options.add_argument("--no-sandbox")  # Chromium refuses to start for root with it
    options.set_capability("goog:loggingPrefs", {"browser": "SEVERE"})
    driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
    driver.set_page_load_timeout(SECONDS_A_PAGE)
    driver.set_script_timeout(SECONDS_A_PAGE)
    return driver


class Walk:
    """What was seen on the way."""

    def __init__(self, site, driver):
        self.site, self.driver = site, driver
        self.anchors = {}  # by page
        self.targets = {}  # (file, anchor): the page that first named it
        self.waiting = collections.deque()
        self.counts = collections.Counter()
        self.faults = []

    def run(self):
        self.link("the site", self.site.address)
        while self.waiting:
            self.visit(self.waiting.popleft())
        for (name, anchor), page in sorted(self.targets.items()):
            if anchor and self.site.has(name) and anchor not in self.anchors.get(name, ()):
                self.faults.append(f"{page}: no such anchor: {name}#{anchor}")
        for name in sorted(self.site.pages() - set(self.anchors)):
            if not name.startswith("dir_"):  # Doxygen lists folders that hold no headers nowhere
                self.faults.append(f"{name}: no link leads here")

    def visit(self, page):
        self.driver.get(self.site.address + urllib.parse.quote(page))
        seen = self.driver.execute_async_script(COLLECT)
        self.anchors[page] = set(seen["anchors"])
        for url in seen["links"]:
            self.link(page, url)
        self.counts.update(pages=1, links=len(seen["links"]), pictures=seen["pictures"])
        self.faults += [f"{page}: picture does not load: {url}" for url in seen["broken"]]
        self.faults += [f"{page}: console: {entry['message']}"
                        for entry in self.driver.get_log("browser")]

    def link(self, page, url):
        name, anchor = self.site.name(url)
        if name is None:
            self.counts["elsewhere"] += url.startswith("http")
            return
        if (name, anchor) in self.targets:
            return
        known = (name, "") in self.targets
        self.targets[name, anchor] = page
        self.targets.setdefault((name, ""), page)
        if known:
            return
        if not self.site.has(name):
            self.faults.append(f"{page}: no such file: {name}")
        elif name.endswith(".html"):
            self.waiting.append(name)


def walk(root):
    """Walks over the site in a folder; returns what is wrong and how much was seen."""
    with Site(root) as site:
        driver = browser()
        try:
            walked = Walk(site, driver)
            walked.run()
        finally:
            driver.quit()
    return walked.faults, walked.counts


def main(root):
    faults, counts = walk(root)
    print("%(pages)d pages, %(links)d links and %(pictures)d pictures on them; "
          "%(elsewhere)d links to other sites not followed" % counts)
    if faults:
        sys.exit("\n".join(faults))


if __name__ == "__main__":
    main(sys.argv[1])

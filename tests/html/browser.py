"""A headless Chromium, driven through chromedriver's WebDriver interface with the standard library alone."""

import json
import os
import re
import subprocess
import tempfile
import urllib.request


class Browser:
    """A browser with one window, which can reach no network. To be used in a with statement."""

    def __init__(self, width=1280, height=900, scripts=True):
        self.size, self.scripts = (width, height), scripts

    def __enter__(self):
        self.profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                       env={**os.environ, "HOME": self.profile.name}, text=True)
        started = (re.search(r"started successfully on port (\d+)", line) for line in self.driver.stdout)
        self.base = f"http://127.0.0.1:{next(filter(None, started))[1]}/session"
        arguments = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--hide-scrollbars",
                     "--host-resolver-rules=MAP * ~NOTFOUND", f"--user-data-dir={self.profile.name}",
                     "--window-size={},{}".format(*self.size)]
        permission = 1 if self.scripts else 2
        options = {"args": arguments, "prefs": {"profile.managed_default_content_settings.javascript": permission}}
        wanted = {"browserName": "chrome", "goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"}}
        self.base += "/" + self.call("", capabilities={"alwaysMatch": wanted})["sessionId"]
        return self

    def __exit__(self, *_):
        try:
            urllib.request.urlopen(urllib.request.Request(self.base, method="DELETE"), timeout=60).close()
        finally:
            self.driver.terminate()
            self.driver.wait()
            self.driver.stdout.close()
            self.profile.cleanup()

    def call(self, command, **arguments):
        request = urllib.request.Request(self.base + command, json.dumps(arguments).encode(),
                                         {"Content-Type": "application/json"}, method="POST")
        with urllib.request.urlopen(request, timeout=240) as answer:
            return json.load(answer)["value"]

    def open(self, file, address=""):
        self.call("/url", url="about:blank")
        self.call("/url", url=file.as_uri() + address)

    def run(self, program, *arguments):
        """What the body of a function returns in the page."""
        return self.call("/execute/sync", script=program, args=arguments)

    def chrome(self, command, **parameters):
        """Calls the developer tools."""
        return self.call("/goog/cdp/execute", cmd=command, params=parameters)

    def complaints(self):
        """What the page logged: errors, and loads that its policy forbade."""
        return [entry["message"] for entry in self.call("/se/log", type="browser")]

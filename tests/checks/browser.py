"""A headless Chromium, driven over its debugging pipe: no driver and no port are needed.

    with Browser(folder) as browser:
        page = browser.open("http://127.0.0.1:8000/", languages="es-ES,es", width=375, scheme="dark")
        page.evaluate("document.title")

It finds no host but 127.0.0.1.
"""

import base64
import json
import os
import select
import signal
import subprocess
import time

TIMEOUT = 120

FLAGS = (
    "--headless=new",
    "--remote-debugging-pipe",
    "--disable-gpu",
    "--disable-dev-shm-usage",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
    "--no-first-run",
    "--no-default-browser-check",
    "--no-proxy-server",
    "--hide-scrollbars",
    "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1",
)


class Browser:
    def __init__(self, folder):
        """`folder` takes its profile and everything else that it writes."""
        # Its commands arrive at descriptor 3, its answers leave by descriptor 4.
        commands, self._commands = os.pipe()
        self._answers, answers = os.pipe()
        # Chromium refuses to give root a sandbox.
        sandbox = ["--no-sandbox"] if os.geteuid() == 0 else []
        launch = ["bash", "-c", f'exec "$0" "$@" 3<&{commands} 4>&{answers}', "chromium", *FLAGS, *sandbox]
        self._log = open(folder / "chromium.log", "wb")
        self._process = subprocess.Popen(
            [*launch, f"--user-data-dir={folder / 'profile'}", "about:blank"],
            pass_fds=(commands, answers),
            stdin=subprocess.DEVNULL,
            stdout=self._log,
            stderr=subprocess.STDOUT,
            start_new_session=True,
            env={**os.environ, "HOME": str(folder), "XDG_CONFIG_HOME": str(folder), "XDG_CACHE_HOME": str(folder)},
        )
        os.close(commands)
        os.close(answers)
        self._received = b""
        self._number = 0
        self.events = []
        try:
            self._open_tab()
        except BaseException:
            self._end(patience=0)
            raise

    def _open_tab(self):
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self._session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Network", "Log"):
            self.call(f"{domain}.enable")
        self._agent = self.evaluate("navigator.userAgent")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._end(TIMEOUT)

    def _end(self, patience):
        os.close(self._commands)  # without the pipe it ends
        try:
            self._process.wait(patience)
        except subprocess.TimeoutExpired:
            os.killpg(self._process.pid, signal.SIGKILL)
            self._process.wait()
        os.close(self._answers)
        self._log.close()

    _session = None

    def call(self, method, **parameters):
        self._number += 1
        message = {"id": self._number, "method": method, "params": parameters}
        if self._session:
            message["sessionId"] = self._session
        os.write(self._commands, json.dumps(message).encode() + b"\0")
        while True:
            answer = self._read()
            if answer.get("id") == self._number:
                if "error" in answer:
                    raise AssertionError(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer)

    def _read(self):
        deadline = time.monotonic() + TIMEOUT
        while b"\0" not in self._received:
            ready, _, _ = select.select([self._answers], [], [], max(0, deadline - time.monotonic()))
            part = os.read(self._answers, 1 << 16) if ready else b""
            if not part:
                raise AssertionError(f"no answer of the browser; see {self._log.name}")
            self._received += part
        message, self._received = self._received.split(b"\0", 1)
        return json.loads(message)

    def evaluate(self, expression):
        """The value of an expression, or of its promise."""
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in result:
            raise AssertionError(f"{expression}: {result['exceptionDetails']}")
        return result["result"].get("value")

    def open(self, address, languages="en-US,en", width=1280, scheme="light", script=True):
        """Loads a page as it looks to this reader. `events` has what happened since."""
        self.call("Page.navigate", url="about:blank")
        self.call("Emulation.setUserAgentOverride", userAgent=self._agent, acceptLanguage=languages)
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])
        self.call("Emulation.setScriptExecutionDisabled", value=not script)
        self._wait_for_page(lambda: self.call("Page.navigate", url=address), 1)
        return self

    def click(self, selector):
        """Follows a link to another page."""
        link = f"document.querySelector({json.dumps(selector)})"
        self._wait_for_page(lambda: self.evaluate(f"{link}.click()"), 0)

    def _wait_for_page(self, action, navigations):
        """Waits until the page that an action leads to has loaded, and after it each page that a script of the former
        one has asked for."""
        while not self._is_idle():
            self.events.append(self._read())
        self.events = []
        action()
        while not self._has_loaded(navigations):
            self.events.append(self._read())

    def _is_idle(self):
        return self.evaluate("document.readyState") == "complete"

    def _has_loaded(self, navigations):
        names = [message.get("method") for message in self.events]
        arrivals = [i for i, name in enumerate(names) if name == "Page.frameNavigated" and self._is_page(i)]
        expected = navigations + names.count("Page.frameRequestedNavigation")
        return 0 < expected <= len(arrivals) and "Page.loadEventFired" in names[arrivals[-1] :]

    def _is_page(self, i):
        """Not the blank page in between, whose arrival may be told late."""
        return self.events[i]["params"]["frame"]["url"] != "about:blank"

    def addresses(self):
        """What was asked for since the page was opened."""
        return [event["params"]["request"]["url"] for event in self._named("Network.requestWillBeSent")]

    def messages(self):
        """What the console shows since the page was opened."""
        told = [event["params"]["entry"]["text"] for event in self._named("Log.entryAdded")]
        told += [str(event["params"]["args"]) for event in self._named("Runtime.consoleAPICalled")]
        return told + [str(event["params"]["exceptionDetails"]) for event in self._named("Runtime.exceptionThrown")]

    def _named(self, method):
        return [event for event in self.events if event.get("method") == method]

    def save_screenshot(self, path):
        """The whole page."""
        height = self.evaluate("document.documentElement.scrollHeight")
        width = self.evaluate("document.documentElement.clientWidth")
        clip = {"x": 0, "y": 0, "width": width, "height": height, "scale": 1}
        data = self.call("Page.captureScreenshot", clip=clip, captureBeyondViewport=True)["data"]
        path.write_bytes(base64.b64decode(data))

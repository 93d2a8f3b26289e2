#!/usr/bin/env python3
"""A hub of Astropy and another program of SAMP beside a window of pavane-view: maps and positions are
sent both ways, areas are asked for, the hub goes.

usage: samp_e2e.py PAVANE_VIEW FOLDER
"""
import math
import os
import sys
import time
import urllib.request
import xmlrpc.client

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
from desk import Failure, Program, on_sky, run_test, wait_for, write_fits

try:
    from astropy.samp import SAMPHubServer, SAMPIntegratedClient, SAMPProxyError
except ImportError:
    print("skipped: there is no Astropy")
    sys.exit(77)

SIZE = 96
RA, DEC = 187.70593, 12.39112


def write_maps(folder):
    for name, x in (("one.fits", 40), ("two and more.fits", 52)):
        write_fits(f"{folder}/{name}", (SIZE, SIZE),
                   (math.exp(-((c - x) ** 2 + (r - 48) ** 2) / 60) + 1e-4 * ((r * 7 + c * 3) % 5)
                    for r in range(SIZE) for c in range(SIZE)), **on_sky(SIZE, 2.7778e-8))
    with open(folder + "/no.fits", "w") as file:
        file.write("no map")


class Other:
    """Another program at the hub."""

    def __init__(self):
        self.heard = []
        self.client = SAMPIntegratedClient(name="other")
        self.client.connect()
        for kind in ("image.load.fits", "coord.pointAt.sky"):
            self.client.bind_receive_notification(kind, self.hear)

    def hear(self, key, sender, kind, params, extra):
        self.heard.append((kind, params))

    def view(self):
        """The number of pavane-view at the hub."""
        for one in self.client.get_registered_clients():
            if self.client.get_metadata(one).get("samp.name") == "pavane-view":
                return one
        return ""

    def ask(self, kind, **params):
        answer = self.client.call_and_wait(
            self.view(), {"samp.mtype": kind, "samp.params": params}, "20")
        return answer["samp.status"], answer.get("samp.result", {}), answer.get("samp.error", {})


def picture(desk, folder, name):
    if os.environ.get("PAVANE_KEEP_PICTURES"):
        os.system(f"DISPLAY={desk.env['DISPLAY']} import -window root {folder}/{name}.png")


def work(desk, program, folder):
    os.environ["HOME"] = folder
    lock = folder + "/lock"
    os.environ["SAMP_HUB"] = desk.env["SAMP_HUB"] = "std-lockurl:file://" + lock
    hub = SAMPHubServer(web_profile=False, lockfile=lock)
    hub.start()
    other = Other()
    view = Program(desk, program, folder, "one.fits")
    view.main()
    time.sleep(0.5)
    if other.view():
        raise Failure("it is at the hub without being asked to")
    view.key("alt+m", "g", "c")  # Maps > Other programs > Connected
    wait_for("pavane-view at the hub", other.view)

    # areas: none, then one, with its centre on the sky
    status, result, _ = other.ask("pavane.areas.get")
    if status != "samp.ok" or result["count"] != "0" or not result["map"].endswith("/one.fits"):
        raise Failure(f"areas before there are some: {status} {result}")
    view.main()
    view.key("2", "Return")
    status, result, _ = other.ask("pavane.areas.get")
    if result["count"] != "1" or "box(" not in result["regions"]:
        raise Failure(f"areas: {result}")
    box = result["regions"].split("box(")[1].split(",")
    if abs(float(box[0]) - RA) > 1e-6 or abs(float(box[1]) - DEC) > 1e-6:
        raise Failure("the area lies elsewhere: " + result["regions"])

    # positions, a wrong one, one off the map; a map that is none, one from elsewhere, one more
    for ra, dec, expected in ((RA, DEC, "samp.ok"), (RA + 1, DEC, "samp.error"),
                              ("x", DEC, "samp.error"), (RA, 99, "samp.error")):
        status, _, error = other.ask("coord.pointAt.sky", ra=str(ra), dec=str(dec))
        if status != expected:
            raise Failure(f"position {ra}, {dec}: {status} {error}")
    picture(desk, folder, "pointed")
    for url in ("http://localhost/one.fits", f"file://{folder}/gone.fits", f"file://{folder}/no.fits"):
        status, _, error = other.ask("image.load.fits", url=url)
        if status != "samp.error" or not error["samp.errortxt"]:
            raise Failure(f"{url}: {status}")
    status, _, error = other.ask("samp.app.ping")
    if status != "samp.ok":
        raise Failure(f"ping: {status}")
    status, _, error = other.ask("image.load.fits", url=f"file://{folder}/two%20and%20more.fits")
    if status != "samp.ok":
        raise Failure(f"a map that is sent: {error}")
    view.window("two and more.fits")

    # the other way
    view.main()
    view.key("alt+m", "g", "m")
    wait_for("the map that is sent", lambda: [p for k, p in other.heard if k == "image.load.fits"])
    url = [p for k, p in other.heard if k == "image.load.fits"][0]["url"]
    if urllib.request.urlopen(url).read() != open(folder + "/one.fits", "rb").read():
        raise Failure("another map was sent: " + url)
    desk.do("mousemove", *view.at(0.5, 0.5))
    time.sleep(0.3)
    view.key("ctrl+alt+p")
    wait_for("the position that is sent", lambda: [p for k, p in other.heard if "point" in k])
    sent = [p for k, p in other.heard if "point" in k][0]
    if abs(float(sent["ra"]) - RA) > 1e-5 or abs(float(sent["dec"]) - DEC) > 1e-5:
        raise Failure(f"another position was sent: {sent}")

    # whoever calls without the key is turned away: the port is found in the list of the kernel
    with open("/proc/net/tcp") as lines:
        ports = {int(line.split()[1].split(":")[1], 16) for line in lines
                 if "0100007F:" in line.split()[1] and line.split()[3] == "0A"}
    turned = 0
    for port in ports:
        proxy = xmlrpc.client.ServerProxy(f"http://127.0.0.1:{port}/")
        try:
            proxy.samp.client.receiveNotification("wrong", "hub", {
                "samp.mtype": "samp.hub.event.shutdown", "samp.params": {}})
        except xmlrpc.client.Fault as fault:
            turned += "the key is wrong" in fault.faultString
        except Exception:  # pylint: disable=broad-except
            pass
    if turned != 1 or not other.view():
        raise Failure(f"{turned} ports turn a stranger away")

    # off and on again, then the hub goes and the window works on
    view.key("alt+m", "g", "c")
    wait_for("pavane-view to leave", lambda: not other.view())
    view.key("alt+m", "g", "c")
    wait_for("pavane-view at the hub again", other.view)
    view.key("alt+m", "g")
    time.sleep(0.5)
    picture(desk, folder, "connected")
    view.key("Escape", "Escape", "Escape")
    other.client.disconnect()
    hub.stop()
    time.sleep(0.5)
    # another hub, which is left when the program ends
    hub = SAMPHubServer(web_profile=False, lockfile=lock)
    hub.start()
    other = Other()
    view.key("alt+m", "g", "c")
    wait_for("pavane-view at the next hub", other.view)
    view.key("ctrl+d")
    view.key("ctrl+q")
    view.window("pavane-view", whole=True)  # the question about the areas
    view.key("alt+n")
    other_window = view.window("two and more.fits")
    view.key("ctrl+q")
    view.gone(other_window)
    view.end()
    if other.view():
        raise Failure("the hub still knows pavane-view")
    other.client.disconnect()
    hub.stop()
    if [name for name in os.listdir(folder + "/config/pavane-view") if "samp" in name]:
        raise Failure("files of answers are left")


if __name__ == "__main__":
    run_test(write_maps, work)

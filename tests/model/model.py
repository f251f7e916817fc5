"""Run the model of one converter on a configuration.

python3 model.py --from R --to R --service NAME [--switch 0|1|2] IN_FILE

prints the converted configuration, and the status and the log on request.
"""

import argparse
import os
import sys
from collections import namedtuple

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import features     # noqa: E402
from engine import FAILED, World, as_bytes      # noqa: E402
from front import Front     # noqa: E402
from qos_database import Qos    # noqa: E402
from qos_routing import ipqosmgr_infra_convert_startup  # noqa: E402

Result = namedtuple("Result", "status file_bytes stdout_bytes log_bytes")

SERVICES = ("qos", "fcportsec", "npiv", "fwm", "assoc", "satmgr")
DEFAULT_PATH = "/cfg"
DEFAULT_PACKAGE = "package"


class Session:
    """One process: version pairs and log streams last from call to call.

    `switch` sets the debug switch of the five converters that have one;
    `syserr2str` gives the text of a status, `release_file_text` the release in
    a platform release file and `environment` the variables that name them."""

    def __init__(self, switch=1, syserr2str=None, release_file_text=None, environment=None):
        self.world = World(syserr2str, release_file_text, environment)
        self.engines = {
            "qos": Qos(self.world, switch),
            "fcportsec": features.FcPortSec(self.world, switch),
            "npiv": features.Npiv(self.world, switch),
            "fwm": features.Fwm(self.world, switch),
            "assoc": features.Assoc(self.world),
            "satmgr": features.Satmgr(self.world, switch),
        }
        self.starts = {
            "qos": ipqosmgr_infra_convert_startup,
            "fcportsec": features.fcportsec_infra_convert_startup,
            "npiv": features.npiv_infra_convert_startup,
            "fwm": features.fwm_infra_convert_startup,
            "assoc": features.assoc_infra_convert_startup,
            "satmgr": features.satmgr_infra_convert_startup,
        }
        self.front = Front(self.start)

    def set_switch(self, service, value):
        """Set the debug switch of one converter."""
        self.engines[service].switch = value

    def put_file(self, path, config):
        """Store a configuration under a directory."""
        self.world.files[as_bytes(path) + b"/ascii/system.cfg"] = bytes(config)

    def get_file(self, path):
        """Give the configuration under a directory."""
        return self.world.files.get(as_bytes(path) + b"/ascii/system.cfg")

    def start(self, service, path, pkg_name, to_version, from_version):
        """Call one converter's start function."""
        return self.starts[service](self.engines[service], as_bytes(path), as_bytes(pkg_name),
                                    as_bytes(to_version), as_bytes(from_version))

    def log_bytes(self, service):
        """Give what the log file of a converter holds."""
        return b"".join(self.engines[service].log_lines)

    def convert(self, service, config, from_ver, to_ver, path=DEFAULT_PATH,
                pkg_name=DEFAULT_PACKAGE):
        """Make one call on a directory that holds `config`."""
        self.put_file(path, config)
        printed = len(self.world.stdout)
        status = self.start(service, path, pkg_name, to_ver, from_ver)
        return Result(status, self.get_file(path), bytes(self.world.stdout[printed:]),
                      self.log_bytes(service))


def convert(service, config, from_ver, to_ver, switch=1, path=DEFAULT_PATH,
            pkg_name=DEFAULT_PACKAGE, syserr2str=None):
    """Make one call of a converter's start function in a fresh process."""
    return Session(switch, syserr2str).convert(service, config, from_ver, to_ver, path, pkg_name)


def main(arguments):
    """The command line."""
    parser = argparse.ArgumentParser(description="Convert a configuration with the model.")
    parser.add_argument("--from", dest="from_ver", required=True, help="source release")
    parser.add_argument("--to", dest="to_ver", required=True, help="target release")
    parser.add_argument("--service", choices=SERVICES, required=True)
    parser.add_argument("--switch", type=int, choices=(0, 1, 2), default=1)
    parser.add_argument("--log", action="store_true", help="write the log to standard error")
    parser.add_argument("file")
    options = parser.parse_args(arguments)
    with open(options.file, "rb") as stream:
        config = stream.read()
    result = convert(options.service, config, options.from_ver, options.to_ver, options.switch)
    sys.stdout.buffer.write(result.file_bytes)
    sys.stdout.buffer.flush()
    if options.log:
        sys.stderr.buffer.write(result.log_bytes)
    print("status 0x%x" % result.status, file=sys.stderr)
    return 1 if result.status == FAILED else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

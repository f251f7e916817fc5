"""The front: registry, dispatch, front log and the release services."""

from engine import FAILED, OK, as_bytes, read_number, shown

REGISTRY = (            # identifier and service name, in the order of a run over all
    (473, "qos"),
    (139, "fcportsec"),
    (649, "npiv"),
    (652, "fwm"),
    (734, "assoc"),
    (678, "satmgr"),
)


class Front:
    """The front over a start function that takes a service name and the four
    arguments; its messages are kept without their time stamps."""

    def __init__(self, start):
        self.start = start
        self.mts_q = 0
        self.messages = []

    def message(self, pattern, *values):
        """Write a front message."""
        self.messages.append(pattern % values)

    def init(self, handle):
        """Store the message-queue handle."""
        self.mts_q = handle
        self.message(b"%s: infraconvertascii_mts_q = %d\n", b"libinfraconvertascii_init", handle)

    def is_uuid_in_startup_table(self, uuid):
        """Tell whether an identifier is registered."""
        return any(uuid == row for row, _ in REGISTRY)

    def startup(self, uuid, result, arguments):
        """Run the converters of an identifier; failures go to the record."""
        name = b"infraconvertascii_startup"
        if arguments is None:
            self.message(b"%s: Invalid or NULL argument passed\n", name)
            if result is not None:
                result["uuid"] = uuid
                result["syserr"] = FAILED
            return OK
        for row, service in REGISTRY:
            if row != uuid:
                continue
            self.message(b"%s: calling convert ASCII function for uuid = 0x%x\n", name, uuid)
            status = self.start(service, *arguments)
            if status != OK and result is not None:
                result["uuid"] = row
                result["syserr"] = status
        return OK

    def startup_all(self, arguments):
        """Run every converter in table order."""
        name = b"infraconvertascii_startup_all"
        if arguments is None:
            self.message(b"%s: Invalid or NULL argument passed\n", name)
            return OK
        for row, _ in REGISTRY:
            self.message(b"%s: calling convert ASCII function for uuid = 0x%x\n", name, row)
            result = {"uuid": row, "syserr": OK}
            self.startup(row, result, arguments)
            if result["syserr"] != OK:
                self.message(b"%s: convert ASCII function for uuid = 0x%x returned error 0x%x\n",
                             name, row, result["syserr"])
        return OK

    def get_version(self, text, size):
        """Give what fits of a release file's text into an area of a size, or None
        for an area that holds nothing."""
        if text is None or size < 1:
            return None
        return text[:size - 1]

    def store_locator(self, kind, path, name):
        """Give the locator of a persistent store; kind is "volatile" or
        "nonvolatile"."""
        return (b"%s:%s/%s" % (kind, shown(path), shown(name)))[:255]

    def compare_versions(self, from_version, to_version):
        """Compare three fields of two releases; give the result and the error."""
        if from_version is None or to_version is None:
            self.message(b"%s: Invalid or NULL argument passed\n",
                         b"infraconvertascii_compare_versions")
            return -2, FAILED
        source = release_fields(as_bytes(from_version))
        target = release_fields(as_bytes(to_version))
        for left, right in zip(source, target):
            if left > right:
                return 1, OK
            if left < right:
                return -1, OK
        return 0, OK

    def is_srv_not_supported_target_ver(self, current, minimum):
        """Tell whether a release is older than the minimum, and the error."""
        result, error = self.compare_versions(current, minimum)
        return error != OK or result < 0, error


def release_fields(text):
    """Give the first three fields of a release; missing ones count as 0."""
    text = text[:15]
    for separator in (b"(", b")"):
        text = text.replace(separator, b".")
    fields = []
    for token in text.split(b"."):
        if token == b"":
            continue
        number, _ = read_number(token, 0)
        number = 0 if number is None else number
        fields.append(max(-2 ** 63, min(2 ** 63 - 1, number)))
    return (fields + [0, 0, 0])[:3]

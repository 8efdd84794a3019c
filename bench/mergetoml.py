"""What a script does in place of the tool: parses the files with tomllib and merges dictionaries, the later file winning."""

import sys
import tomllib

winners = {}
for path in sys.argv[1:]:
    with open(path, "rb") as file:
        document = tomllib.load(file)
    for subsystem in document["subsystem"]:
        for key in subsystem.get("key", []):
            winners[subsystem["type"], key["id"]] = key["value"]
for (subsystem, number), value in sorted(winners.items()):
    print(subsystem, number, value)

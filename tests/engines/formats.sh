#!/usr/bin/env bash
# Reports by their schemas: SARIF 2.1.0 by that of its makers; code quality and JUnit by schemas of our own, for none
# comes with a package.
#
# usage: formats.sh INFRACONVERT SOURCE_DIRECTORY
set -euo pipefail
source "$(dirname "$0")/needs.sh"
sarif_schema=$tests/node_modules/@microsoft/jest-sarif/lib/schemas/sarif-2.1.0-rtm.5.json
needs xmllint python3 "$sarif_schema"
cd "$place"
make_fleet 20
printf 'version 4.1(2)\nclass-map <a&"b">\n  match cos 5\npolicy-map \x80\x01\n  class <a&"b">\n    set cos 3\n' >'fleet/odd & <name>.cfg'
printf 'version 4.1(2)\nnpiv enable' >fleet/unended.cfg
audit() { infraconvert audit --from '4.1(2)' --to '5.0(3)' --format "$1" fleet "$2" 2>/dev/null || [ $? -eq 1 ]; }

audit junit missing.cfg >report.xml
xmllint --noout --schema "$tests/schemas/junit.xsd" report.xml 2>messages || { cat messages; exit 1; }
[ "$(xmllint --xpath 'count(//testcase)' report.xml)" = 22 ]
[ "$(xmllint --xpath 'count(//failure[@type="IC041"])' report.xml)" = 2 ]
[ "$(xmllint --xpath 'count(//error)' report.xml)" = 1 ]
[ "$(xmllint --xpath 'string(//testcase[contains(@name, "odd")]/@name)' report.xml)" = 'fleet/odd & <name>.cfg' ]

audit codequality missing.cfg >codequality.json
audit sarif missing.cfg >report.sarif
python3 - "$tests/schemas/codequality.schema.json" codequality.json "$sarif_schema" report.sarif <<'TXT'
import json, jsonschema, sys

for schema, report in (sys.argv[1:3], sys.argv[3:5]):
    jsonschema.validate(json.load(open(report)), json.load(open(schema)), format_checker=jsonschema.FormatChecker())
issues = json.load(open('codequality.json'))
assert len({issue['fingerprint'] for issue in issues}) == len(issues), issues
assert {issue['severity'] for issue in issues} >= {'critical', 'minor', 'blocker'}, issues
TXT

# A finding keeps its name when lines are put in front of it.
names() { python3 -c 'import json, sys; print(*sorted(issue["fingerprint"] for issue in json.load(sys.stdin)), sep="\n")'; }
audit codequality missing.cfg | names >before
sed -i '1a hostname somewhere' fleet/03.cfg
audit codequality missing.cfg | names | cmp - before

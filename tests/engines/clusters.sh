#!/usr/bin/env bash
# The examples for clusters and pipelines: the manifest by its schema, and the scripts as a node would run them, without a
# cluster.
#
# usage: clusters.sh INFRACONVERT SOURCE_DIRECTORY
set -euo pipefail
source "$(dirname "$0")/needs.sh"
needs node "$tests/node_modules/kubernetes-models"
cd "$place"
as_json() { python3 -c 'import json, sys, yaml; print(json.dumps(yaml.safe_load(sys.stdin)))'; }
manifest=$source/examples/kubernetes-job.yaml
as_json <"$manifest" | node "$tests/kubernetes.mjs"
sed 's/action: Ignore/action: Ignored/' "$manifest" | as_json | node "$tests/kubernetes.mjs" 2>/dev/null && exit 1

make_fleet 12
export FROM='4.1(2)' TO='5.0(3)'
as_json <"$manifest" | python3 -c 'import json, sys
print(json.load(sys.stdin)["spec"]["template"]["spec"]["containers"][0]["args"][0].replace("/100", "/4"))' >script
for JOB_COMPLETION_INDEX in 0 1 2 3; do
  export JOB_COMPLETION_INDEX
  sh script 2>/dev/null
done
same_reports parts/*.jsonl

rm parts/*
export SLURM_ARRAY_TASK_COUNT=3 SLURM_ARRAY_JOB_ID=1
for SLURM_ARRAY_TASK_ID in 1 2 3; do
  export SLURM_ARRAY_TASK_ID
  sh "$source/examples/slurm-array.sh" 2>/dev/null
done
same_reports parts/*.jsonl

mv fleet switches
as_json <"$source/examples/gitlab-ci.yml" | python3 -c 'import json, sys
print(*json.load(sys.stdin)["audit"]["script"], sep="\n")' >pipeline
status=0
sh -e pipeline >told 2>/dev/null || status=$?
[ $status = 4 ]
grep -q 'need hands' told
grep -q '</testsuites>' junit.xml
grep -q '</html>' audit.html
grep -q IC041 codequality.json
: >audit.jsonl
sed -i '/infraconvert audit/d' pipeline
sh -e pipeline 2>told && exit 1
grep -q 'audit.jsonl is not whole' told

// Validates a manifest (as JSON on standard input) by the schema of its kind.
import { readFileSync } from 'node:fs';
import { Job } from 'kubernetes-models/batch/v1/Job';

const manifest = JSON.parse(readFileSync(0));
new Job(manifest).validate();

// The schema lets pass what it does not know, so that a misspelt key would go unnoticed.
const known = ['completionMode', 'completions', 'parallelism', 'backoffLimitPerIndex', 'maxFailedIndexes',
               'podFailurePolicy', 'template'];
for (const key of Object.keys(manifest.spec))
  if (!known.includes(key)) throw new Error(`a Job has no ${key}`);

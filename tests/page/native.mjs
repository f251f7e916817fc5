// The command that the page is compared with.
import { spawnSync } from "node:child_process";
import { mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";

export const command = process.env.INFRACONVERT;

// Runs it in a directory of its own with these files, by path; `written` is one that it writes there.
export function runNative(words, files, written) {
  const place = mkdtempSync(join(tmpdir(), "native-"));
  for (const [path, bytes] of Object.entries(files)) {
    mkdirSync(dirname(join(place, path)), { recursive: true });
    writeFileSync(join(place, path), bytes);
  }
  const run = spawnSync(command, words, { cwd: place, maxBuffer: 1 << 28 });
  const text = written && readFileSync(join(place, written), "utf8");
  rmSync(place, { recursive: true });
  return { status: run.status, output: run.stdout.toString("latin1"), messages: run.stderr.toString(), ...(written && { written: text }) };
}

// The answer to the question: the rules, what happens to each configuration, and the ways that lead there.

const textOf = bytes => new TextDecoder().decode(bytes);

// What a message of the command says, without its name in front.
const ownWords = messages => messages.trim().split("\n").map(line => line.replace(/^infraconvert: /, "")).join("\n");

// The configurations of these paths and what was agreed on, for a run of the command.
const filesFor = paths => ({ ...given.agreed, ...Object.fromEntries(paths.map(path => [path, given.files[path]])) });

// ---- the rules

// The rules for the releases that most of the configurations go through.
async function rulesAsked() {
  const words = wordsFor("plan"), own = words.includes("--from") ? [] : ["--from", usualRelease()];
  const { status, output, messages } = await workers.ask("run", { words: ["plan", "--json", ...own, ...words] });
  if (status !== 0) throw new Error(ownWords(messages));
  const rules = rulesTable(JSON.parse(textOf(output)));
  return () => { at("rules").lastElementChild.replaceChildren(rules); at("rules").hidden = false; };
}

function rulesTable({ services }) {
  const step = services.some(s => s.hop) ? ["Step"] : [];
  return table("rules", [...step, "Service", "Rule", "What it does"], services.map(s => [...step.map(() => routeText(s.hop)),
    s.title, s.rules.map(rule => rule.id).join(", ") || "\u2013", s.rules.map(rule => rule.description).join("; ") || s.no_rule_because]));
}

// ---- the configurations

const inBatch = 8; // so that the progress moves, and a new instance for each batch costs little

// What `look` gives for each batch.
function inBatches(batches, count, tell, look) {
  let done = 0;
  tell(done, count);
  return Promise.all(batches.map(async batch => {
    const part = await look(batch);
    tell(done += batch.length, count);
    return part;
  }));
}

async function auditAll(words, paths, tell) {
  const batches = [];
  for (let i = 0; i < paths.length; i += inBatch) batches.push(paths.slice(i, i + inBatch));
  const parts = await inBatches(batches, paths.length, tell, batch => auditBatch(words, batch));
  return join(parts.flat());
}

// What is said of the files of a batch. Where the command itself comes to no end, each file is tried alone.
async function auditBatch(words, paths) {
  try {
    const { status, messages, files: { "/report.html": page } } = await workers.ask("run",
      { words: ["audit", "--report", "/report.html", ...words, "--", ...paths], files: filesFor(paths), keep: ["/report.html"] });
    if (!page) throw new Error(ownWords(messages) || "infraconvert ended with status " + status);
    return [partOfPage(page)];
  } catch (error) {
    if (error.forgotten) throw error;
    if (paths.length > 1) return (await Promise.all(paths.map(path => auditBatch(words, [path])))).flat();
    return [partOfTrouble(paths[0], error.message)];
  }
}

function showAnswer(whole, words) {
  const report = reportOf(whole.summary, i => whole.details[i] && JSON.parse(whole.details[i]));
  at("report").replaceChildren(at("report-body").content.cloneNode(true));
  report.actions = configuration => actionsFor(report, configuration, words);
  at("results").hidden = false;
  at("downloads").replaceChildren(...downloadsFor(report, words, () => pageOf(whole)));
  location.hash = "";
  showReport(report);
  at("results").scrollIntoView();
}

// ---- the ways

// The ways of all configurations; what comes from one release is tried together.
async function waysAsked(paths, tell) {
  const words = wordsFor("plan"), batches = new Map(), told = words.includes("--from");
  for (const { path, release } of given.found.configurations) {
    const own = told ? "" : release || path, last = batches.get(own)?.at(-1);
    if (last && last.length < inBatch) last.push(path);
    else batches.set(own, [...(batches.get(own) || []), [path]]);
  }
  const parts = await inBatches([...batches.values()].flat(), paths.length, tell, batch => planBatch(words, batch));
  return joinPlans(parts, paths);
}

async function planBatch(words, paths) {
  const { output, messages } = await workers.ask("run", { words: ["plan", "--json", ...words, "--", ...paths], files: filesFor(paths) });
  const plan = output.length ? JSON.parse(textOf(output)) : { error: ownWords(messages) };
  if (plan.error) throw new Error(plan.error);
  return plan;
}

function showWays(plan, taken) {
  at("ways").lastElementChild.replaceChildren(...waysOf(plan, {
    choose(stops) { showWays(plan, stops); takeWay(stops); }, taken, masked: question().mask.checked,
  }));
  at("ways").hidden = false;
}

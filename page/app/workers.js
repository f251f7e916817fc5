// The workers: as many as the machine has processors, each with the module; tasks wait until one is free.

const longestTask = 120000; // milliseconds; a converter that comes to no end is stopped with its worker

function makeWorkers(size = Math.min(navigator.hardwareConcurrency || 2, 8)) {
  const source = document.getElementById("worker-source").textContent;
  const address = URL.createObjectURL(new Blob([source], { type: "text/javascript" }));
  const packed = Uint8Array.from(atob(document.getElementById("module").textContent.trim()), c => c.charCodeAt(0));
  const waiting = [], free = [];
  let last = 0;

  function add() {
    const own = { worker: new Worker(address), task: null };
    own.worker.onmessage = ({ data }) => end(own, data.trouble, data.result);
    own.worker.onerror = event => end(own, event.message || "the worker ended");
    free.push(own);
    give(own, { kind: "start", request: { packed }, done() {}, failed(trouble) { console.error(trouble); } });
  }
  function give(own, task) {
    free.splice(free.indexOf(own), 1);
    own.task = task;
    own.timer = setTimeout(() => { own.worker.terminate(); end(own, "did not end and was stopped", undefined, true); }, longestTask);
    own.worker.postMessage({ number: ++last, kind: task.kind, request: task.request });
  }
  function end(own, trouble, result, gone = false) {
    const task = own.task;
    clearTimeout(own.timer);
    own.task = null;
    if (gone) add(); else free.push(own);
    trouble === undefined ? task.done(result) : task.failed(new Error(trouble));
    next();
  }
  function next() {
    while (waiting.length && free.length) give(free[0], waiting.shift());
  }

  for (let i = 0; i < size; i++) add();
  return {
    size,
    // A promise of what the task gives.
    ask: (kind, request) => new Promise((done, failed) => { waiting.push({ kind, request, done, failed }); next(); }),
    // What waits is not done any more.
    forget() { waiting.splice(0).forEach(task => task.failed(Object.assign(new Error("forgotten"), { forgotten: true }))); },
  };
}

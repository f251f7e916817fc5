// A worker of the page: runs the command, one run at a time, on what it is sent.

let compiled; // WebAssembly.Module

const tasks = {
  start({ packed }) { compiled = new WebAssembly.Module(fflate.inflateSync(packed)); return {}; },
  run: request => runCommand(compiled, request),
  zip: ({ files }) => ({ bytes: fflate.zipSync(files) }),
};

onmessage = ({ data: { number, kind, request } }) => {
  try {
    postMessage({ number, result: tasks[kind](request) });
  } catch (error) {
    postMessage({ number, trouble: String(error) });
  }
};

// The files of this machine, below /host. All others that a test writes stand in memory.
Module['preRun'] = function () {
  FS.mkdir('/host');
  FS.mount(NODEFS, {root: '/'}, '/host');
};

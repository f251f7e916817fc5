// See forked_memory.cpp.
mergeInto(LibraryManager["library"], {
  undone__deps: ['$FS'],
  undone: function (call, argument, heapEnd) {
    var memory = HEAPU8.slice(0, heapEnd);
    var streams = FS.streams.slice();
    var stack = stackSave();
    var status = -1;
    var quit = quit_;
    quit_ = function (code, thrown) {
      throw thrown; // up to here, not the end of the program
    };
    try {
      status = {{{ makeDynCall('ii', 'call') }}}(argument);
    } catch (error) {
      if (error instanceof ExitStatus) status = error.status & 0xff;
      else console.error(error);
    }
    quit_ = quit;
    ABORT = false;
    stackRestore(stack);
    HEAPU8.set(memory);
    HEAPU8.fill(0, heapEnd); // as a heap that grows expects it
    FS.streams = streams;
    streams.forEach(function (stream, descriptor) {
      if (stream) stream.fd = descriptor; // also of one that was closed
    });
    return status;
  },
});

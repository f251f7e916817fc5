# WebAssembly has no processes, and no files but those of the host that runs it, here Node.
set(support ${CMAKE_CURRENT_LIST_DIR}/support)
set(host_files /host)
set(processes support/forked_memory.cpp)
add_link_options(--js-library=${support}/forked_memory.js --pre-js=${support}/host_files.js -lnodefs.js
                 -sENVIRONMENT=node -sWASM_ASYNC_COMPILATION=0 -sEXIT_RUNTIME -sALLOW_MEMORY_GROWTH)

# What the tests write stands in memory, and that is no file system of Linux.
set(left_out
    # A size has 32 bits there,
    loading.a_file_may_be_too_large
    # a file no second name,
    replace_file.a_second_name_keeps_the_old_text_until_the_end
    replace_file.what_the_dead_left_behind_is_removed_and_nothing_else
    replace_file.may_be_called_off_up_to_the_first_byte
    replace_file.rights_of_another_file
    # no owner that matters, no lock, and two cannot be exchanged.
    replace_file.what_was_left_behind_is_of_the_caller_or_of_the_owner
    replace_file.two_writers_at_once_do_not_take_each_other_for_dead
    replace_file.what_is_not_expected_is_put_back
    # The library is not a shared one.
    abi.exports abi.runpath)

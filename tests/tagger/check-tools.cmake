# SPDX-License-Identifier: MIT
# The command-line tools: text -> pinyin-dictc -> pinyin-dictdump gives the text back for the
# rules in the repository and for the built dictionaries; pinyin-tag answers through the ABI.
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
function(run)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "${ARGN} failed (${rc}): ${err}")
    endif()
    set(out "${out}" PARENT_SCOPE)
endfunction()
function(expect_same a b)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${a} ${b} RESULT_VARIABLE rc)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "${a} and ${b} differ")
    endif()
endfunction()

# Each built dictionary: binary -> text -> binary gives the same bytes, and the text again.
# The word dictionary takes long to rebuild, so only the full check (-DFULL=ON) does it.
set(files chars:Pinyin.dic rules:secrule.dic)
if(FULL)
    set(files words:firrule.dic)
endif()
foreach(kind_file IN LISTS files)
    string(REPLACE ":" ";" kf ${kind_file})
    list(GET kf 0 kind)
    list(GET kf 1 file)
    run(${DICTDUMP} ${DICT_DIR}/${file})
    file(WRITE ${WORK_DIR}/${file}.txt "${out}")
    run(${DICTC} ${kind} --text ${WORK_DIR}/${file}.txt -o ${WORK_DIR}/${file})
    expect_same(${DICT_DIR}/${file} ${WORK_DIR}/${file})
    run(${DICTDUMP} ${WORK_DIR}/${file})
    file(WRITE ${WORK_DIR}/${file}.again.txt "${out}")
    expect_same(${WORK_DIR}/${file}.txt ${WORK_DIR}/${file}.again.txt)
endforeach()

if(FULL)
    return()
endif()

# A small word list: text -> binary -> text.
file(WRITE ${WORK_DIR}/words.txt "一个\tyí gè\t190\n银行\tyín háng\t190\n长江\tcháng jiāng\t160\n")
run(${DICTC} words --text ${WORK_DIR}/words.txt -o ${WORK_DIR}/words.dic)
run(${DICTDUMP} ${WORK_DIR}/words.dic)
file(READ ${WORK_DIR}/words.txt words_text)
if(NOT out STREQUAL words_text)
    message(FATAL_ERROR "words came back as '${out}'")
endif()

# A patch sets a word's readings over the source (keeping its cost), adds a word with a cost, and
# is refused for a line that changes nothing, naming the patch file and the line.
file(WRITE ${WORK_DIR}/patch.txt "# school readings\n银行\tyín xíng\n长城\tcháng chéng\t300\n")
run(${DICTC} words --text ${WORK_DIR}/words.txt --patch ${WORK_DIR}/patch.txt
    -o ${WORK_DIR}/patched.dic)
run(${DICTDUMP} ${WORK_DIR}/patched.dic)
if(NOT out STREQUAL "一个\tyí gè\t190\n银行\tyín xíng\t190\n长城\tcháng chéng\t300\n长江\tcháng jiāng\t160\n")
    message(FATAL_ERROR "patched words came back as '${out}'")
endif()
file(WRITE ${WORK_DIR}/same.txt "银行\tyín háng\n")
execute_process(COMMAND ${DICTC} words --text ${WORK_DIR}/words.txt --patch ${WORK_DIR}/same.txt
                        -o ${WORK_DIR}/same.dic
                ERROR_VARIABLE err RESULT_VARIABLE rc)
if(rc EQUAL 0 OR NOT err STREQUAL "pinyin-dictc: ${WORK_DIR}/same.txt: line 1: \"银行\" reads so already\n")
    message(FATAL_ERROR "unexpected result ${rc}: ${err}")
endif()

# The packaged word source: a 儿 read light after a word's first character is fused and printed
# r, a 儿 read ér stays a syllable; the patch comes after and may make a light 儿 a syllable again.
file(WRITE ${WORK_DIR}/source.json
     "{\"一会儿\": [\"yí huì er\", 30], \"女儿\": [\"nǚ ér\", 20], \"托儿所\": [\"tuō er suǒ\", 10]}")
file(WRITE ${WORK_DIR}/source-patch.txt "托儿所\ttuō ér suǒ\n")
run(${DICTC} words --pinyin-pro ${WORK_DIR}/source.json --patch ${WORK_DIR}/source-patch.txt
    -o ${WORK_DIR}/source.dic)
if(NOT out STREQUAL "pinyin-dictc: 3 words; dropped 0, fused 儿 in 2, patched 1\n")
    message(FATAL_ERROR "pinyin-dictc said '${out}'")
endif()
run(${DICTDUMP} ${WORK_DIR}/source.dic)
if(NOT out STREQUAL "一会儿\tyí huì r\t44\n女儿\tnǚ ér\t70\n托儿所\ttuō ér suǒ\t115\n")
    message(FATAL_ERROR "the word source came back as '${out}'")
endif()

# Errors name the file and the line.
file(WRITE ${WORK_DIR}/bad.txt "class\tDIGIT\t一二\nrule\t一\tyi1\t_{DIGIT}\n")
execute_process(COMMAND ${DICTC} rules --text ${WORK_DIR}/bad.txt -o ${WORK_DIR}/bad.dic
                ERROR_VARIABLE err RESULT_VARIABLE rc)
if(rc EQUAL 0 OR NOT err STREQUAL "pinyin-dictc: ${WORK_DIR}/bad.txt: line 2: \"yi1\" is not a pinyin syllable\n")
    message(FATAL_ERROR "unexpected result ${rc}: ${err}")
endif()
if(EXISTS ${WORK_DIR}/bad.dic)
    message(FATAL_ERROR "a failed compile left a file behind")
endif()
file(WRITE ${WORK_DIR}/junk.dic "not a dictionary at all, but long enough for a header")
execute_process(COMMAND ${DICTDUMP} ${WORK_DIR}/junk.dic ERROR_VARIABLE err RESULT_VARIABLE rc)
if(rc EQUAL 0 OR NOT err STREQUAL "pinyin-dictdump: ${WORK_DIR}/junk.dic: not a dictionary of the tagging library (unknown magic)\n")
    message(FATAL_ERROR "unexpected result ${rc}: ${err}")
endif()

# pinyin-tag: lines from the command line and from standard input, --lone, --help, --version.
run(${TAG} 银行行长 还钱)
if(NOT out STREQUAL "银/yín行/háng行/háng长/zhǎng\n还/huán钱/qián\n")
    message(FATAL_ERROR "pinyin-tag answered '${out}'")
endif()
file(WRITE ${WORK_DIR}/input.txt "还\n")
execute_process(COMMAND ${TAG} --lone INPUT_FILE ${WORK_DIR}/input.txt OUTPUT_VARIABLE out RESULT_VARIABLE rc)
if(NOT rc EQUAL 0 OR NOT out STREQUAL "还/hái huán\n")
    message(FATAL_ERROR "pinyin-tag --lone answered '${out}' (${rc})")
endif()
run(${TAG} --help)
if(NOT out MATCHES "^usage: pinyin-tag")
    message(FATAL_ERROR "pinyin-tag --help printed '${out}'")
endif()
run(${TAG} --version)
if(NOT out MATCHES "^pinyin-tag [0-9]+\\.[0-9]+\\.[0-9]+\n$")
    message(FATAL_ERROR "pinyin-tag --version printed '${out}'")
endif()
execute_process(COMMAND ${TAG} --dict-dir ${WORK_DIR}/nowhere 行 ERROR_VARIABLE err RESULT_VARIABLE rc)
if(NOT rc EQUAL 1)
    message(FATAL_ERROR "pinyin-tag without dictionaries exited ${rc}: ${err}")
endif()

# The compiler's temporary file is made new beside the target: a link planted where a
# predictable temporary name (or the target itself) would be is never written through, and
# nothing is left behind.
file(MAKE_DIRECTORY ${WORK_DIR}/planted)
file(WRITE ${WORK_DIR}/victim.txt "precious\n")
file(CREATE_LINK ${WORK_DIR}/victim.txt ${WORK_DIR}/planted/rules.dic.tmp SYMBOLIC)
file(CREATE_LINK ${WORK_DIR}/victim.txt ${WORK_DIR}/planted/linked.dic SYMBOLIC)
run(${DICTC} rules --text ${SOURCE_DIR}/tagger/data/secrule.txt -o ${WORK_DIR}/planted/rules.dic)
run(${DICTC} rules --text ${SOURCE_DIR}/tagger/data/secrule.txt -o ${WORK_DIR}/planted/linked.dic)
file(READ ${WORK_DIR}/victim.txt victim)
if(NOT victim STREQUAL "precious\n" OR IS_SYMLINK ${WORK_DIR}/planted/linked.dic)
    message(FATAL_ERROR "pinyin-dictc wrote through a planted link")
endif()
file(GLOB left RELATIVE ${WORK_DIR}/planted ${WORK_DIR}/planted/*)
list(SORT left)
if(NOT left STREQUAL "linked.dic;rules.dic;rules.dic.tmp")
    message(FATAL_ERROR "pinyin-dictc left '${left}'")
endif()

# A dictionary that is a FIFO is refused at once (opening it must not wait for a writer).
file(MAKE_DIRECTORY ${WORK_DIR}/fifo)
foreach(file Pinyin.dic firrule.dic)
    file(CREATE_LINK ${DICT_DIR}/${file} ${WORK_DIR}/fifo/${file} SYMBOLIC)
endforeach()
file(REMOVE ${WORK_DIR}/fifo/secrule.dic)
execute_process(COMMAND mkfifo ${WORK_DIR}/fifo/secrule.dic)
execute_process(COMMAND ${TAG} --dict-dir ${WORK_DIR}/fifo 行 ERROR_VARIABLE err
                RESULT_VARIABLE rc TIMEOUT 20)
if(NOT rc EQUAL 1 OR NOT err MATCHES "secrule.dic: not a regular file\n")
    message(FATAL_ERROR "pinyin-tag with a FIFO for a dictionary: ${rc}: ${err}")
endif()

# Control characters reach the terminal as escapes, in answers and in errors.
string(ASCII 27 escape)
execute_process(COMMAND ${TAG} "银${escape}[2J行" OUTPUT_VARIABLE out RESULT_VARIABLE rc)
if(NOT rc EQUAL 0 OR NOT out STREQUAL "银/yín\\x1b/[/2/J/行/xíng\n")
    message(FATAL_ERROR "pinyin-tag printed '${out}' (${rc})")
endif()
execute_process(COMMAND ${TAG} --dict-dir "${WORK_DIR}/no${escape}]52;c;where" 行
                ERROR_VARIABLE err RESULT_VARIABLE rc)
if(NOT rc EQUAL 1 OR err MATCHES "${escape}" OR NOT err MATCHES "no\\\\x1b\\]52;c;where")
    message(FATAL_ERROR "pinyin-tag printed the error '${err}' (${rc})")
endif()

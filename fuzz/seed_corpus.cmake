# cmake -DFILES="a.txt;b.txt" -DFOLDER=out -P seed_corpus.cmake
# Each entry of the files, which stand between lines of ----, becomes a file of the corpus.
file(MAKE_DIRECTORY ${FOLDER})
set(count 0)
foreach(file IN LISTS FILES)
  file(READ ${file} hex HEX)
  # In hexadecimal digits, because brackets and semicolons mean something to lists. 0a2d2d2d2d0a is the separating line.
  string(REPLACE "0a2d2d2d2d0a" ";" entries "${hex}")
  foreach(entry IN LISTS entries)
    math(EXPR count "${count} + 1")
    string(REGEX REPLACE "(..)" "\\\\x\\1" escaped "${entry}")
    execute_process(COMMAND printf "${escaped}" OUTPUT_FILE ${FOLDER}/seed_${count}.sql)
  endforeach()
endforeach()

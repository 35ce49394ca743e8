# Warnings every target of ours is built with; the test command (scripts/test.sh) makes them errors.
option(ZPHONETIC_WERROR "Treat compiler warnings as errors" OFF)
add_compile_options(-Wall -Wextra -Wno-unused-parameter)
if(ZPHONETIC_WERROR)
    add_compile_options(-Werror)
endif()

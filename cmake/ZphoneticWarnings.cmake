# Warnings every target of ours is built with.
add_compile_options(-Wall -Wextra -Wno-unused-parameter)

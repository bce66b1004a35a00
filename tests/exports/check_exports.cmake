message(STATUS "todo")

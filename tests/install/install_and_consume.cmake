# Installs the build into a scratch prefix, then configures, builds and runs the consumer against it.
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix RESULT_VARIABLE rc OUTPUT_QUIET)
if(rc)
  message(FATAL_ERROR "install failed: ${rc}")
endif()
# The substitute host is a package of its own; its control library and private headers stay behind.
if(NOT EXISTS ${WORK}/prefix/lib/cmake/ZrHost/ZrHostConfig.cmake AND NOT EXISTS ${WORK}/prefix/lib64/cmake/ZrHost/ZrHostConfig.cmake)
  message(FATAL_ERROR "the host's package is not installed")
endif()
file(GLOB_RECURSE leaked ${WORK}/prefix/*ZrHostControl* ${WORK}/prefix/*zrhostcontrol* ${WORK}/prefix/*zrdrawingcontrol*
     ${WORK}/prefix/include/*zrdbinternal.h ${WORK}/prefix/include/*zruievents.h)
if(leaked)
  message(FATAL_ERROR "installed what only the build uses: ${leaked}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G Ninja -DCMAKE_PREFIX_PATH=${WORK}/prefix
                "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${FLAGS}"
                RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "the consumer does not configure against the installed package")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "the consumer does not build against the installed package")
endif()
execute_process(COMMAND ${WORK}/build/consumer RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "the consumer ran with ${rc}")
endif()

# The colour books the build makes with zracb: the shipped ones, and the large one of the benchmark.

# zr_design_color_book(ACB COUNT N NAME BOOK): a masked book of N colours of our own design.
function(zr_design_color_book acb)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "COUNT;NAME" "")
  get_filename_component(folder ${acb} DIRECTORY)
  set(palette ${CMAKE_CURRENT_BINARY_DIR}/colorbooks/design-${arg_COUNT}.gpl)
  add_custom_command(OUTPUT ${palette}
    COMMAND ${CMAKE_COMMAND} -DOUT=${palette} -DCOUNT=${arg_COUNT} -P ${CMAKE_SOURCE_DIR}/cmake/ZrDesignPalette.cmake
    DEPENDS ${CMAKE_SOURCE_DIR}/cmake/ZrDesignPalette.cmake
    COMMENT "Designing ${arg_COUNT} colours")
  add_custom_command(OUTPUT ${acb}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
    COMMAND zracb make ${palette} ${acb} --masked --name ${arg_NAME}
    DEPENDS zracb ${palette}
    COMMENT "Making the colour book ${arg_NAME}")
endfunction()

# The host looks for books in <folder of libZrHost.so>/../share/ZrHost/colorbooks.
set(ZR_COLORBOOK_DIR ${CMAKE_BINARY_DIR}/share/ZrHost/colorbooks)

# The X11 colour names, from Debian's x11-common.
find_file(ZR_X11_RGB_TXT rgb.txt PATHS /usr/share/X11 /etc/X11 NO_DEFAULT_PATH)
if(NOT ZR_X11_RGB_TXT)
  message(FATAL_ERROR "rgb.txt of the X11 colour names not found: install Debian's x11-common (scripts/deps.sh)")
endif()
add_custom_command(OUTPUT ${ZR_COLORBOOK_DIR}/x11-colors.acb
  COMMAND ${CMAKE_COMMAND} -E make_directory ${ZR_COLORBOOK_DIR}
  COMMAND zracb make ${ZR_X11_RGB_TXT} ${ZR_COLORBOOK_DIR}/x11-colors.acb --name "X11 Colours"
  DEPENDS zracb ${ZR_X11_RGB_TXT}
  COMMENT "Making the colour book X11 Colours")

zr_design_color_book(${ZR_COLORBOOK_DIR}/zr-design.acb COUNT 1008 NAME "ZR Design")

add_custom_target(zrcolorbooks ALL DEPENDS ${ZR_COLORBOOK_DIR}/x11-colors.acb ${ZR_COLORBOOK_DIR}/zr-design.acb)
install(FILES ${ZR_COLORBOOK_DIR}/x11-colors.acb ${ZR_COLORBOOK_DIR}/zr-design.acb
  DESTINATION ${CMAKE_INSTALL_DATADIR}/ZrHost/colorbooks)

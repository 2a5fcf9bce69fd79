# Writes a palette of our own colours in the "R G B name" form zracb reads:
#   cmake -DOUT=FILE -DCOUNT=N -P ZrDesignPalette.cmake
# Each family is a base colour in 36 variants, six steps towards white by six steps towards black,
# named "ZR <family number> <family> <variant>". Beyond 36 a family repeats its variants a little
# lighter each round, so any count gets names that are all different.
if(NOT OUT OR NOT COUNT)
  message(FATAL_ERROR "usage: cmake -DOUT=FILE -DCOUNT=N -P ZrDesignPalette.cmake")
endif()

set(families
  "Harbour Blue|30|90|140" "Brick Red|160|50|40" "Moss Green|90|110|50" "Saffron|240|170|30"
  "Slate|90|100|110" "Plum|110|50|90" "Terracotta|200|100|70" "Lagoon|20|150|150"
  "Olive Grove|120|120|40" "Coral|240|110|90" "Ink|30|40|70" "Heather|150|110|160"
  "Sand Dune|210|180|130" "Pine|30|80|50" "Rust|170|80|30" "Glacier|160|200|220"
  "Mulberry|130|30|70" "Meadow|120|170|70" "Amber|220|140|20" "Storm Grey|110|115|125"
  "Cobalt|30|70|170" "Sage|150|170|130" "Clay|180|120|90" "Orchid|190|110|190"
  "Marigold|250|190|40" "Teal Reef|0|120|120" "Cocoa|100|60|40" "Lilac Mist|190|170|220")
list(LENGTH families familyCount)
math(EXPR perFamily "(${COUNT} + ${familyCount} - 1) / ${familyCount}")

set(lines "")
set(written 0)
set(family 0)
foreach(entry IN LISTS families)
  string(REPLACE "|" ";" fields "${entry}")
  list(GET fields 0 familyName)
  math(EXPR code "100 + 10 * ${family}")
  math(EXPR lastVariant "${perFamily} - 1")
  foreach(variant RANGE ${lastVariant})
    if(written EQUAL COUNT)
      break()
    endif()
    math(EXPR tint "${variant} % 6")
    math(EXPR shade "(${variant} / 6) % 6")
    math(EXPR round "${variant} / 36")
    set(rgb "")
    foreach(index 1 2 3)
      list(GET fields ${index} base)
      math(EXPR value "${base} + (255 - ${base}) * (${tint} + ${round}) / (8 + ${round})")
      math(EXPR value "${value} * (8 - ${shade}) / 8")
      list(APPEND rgb ${value})
    endforeach()
    list(JOIN rgb " " rgbText)
    math(EXPR number "${variant} + 1")
    string(APPEND lines "${rgbText}\tZR ${code} ${familyName} ${number}\n")
    math(EXPR written "${written} + 1")
  endforeach()
  math(EXPR family "${family} + 1")
endforeach()

file(WRITE "${OUT}.tmp" "Name: ZR Design\n${lines}")
file(RENAME "${OUT}.tmp" "${OUT}")

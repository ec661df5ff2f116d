# The memory images compiled into the plug-in: the main archive (factory presets and the
# editor's bitmaps) and the three font archives. Each becomes a text-form array wrapped in a
# source that registers it by name while the library loads.

set(ZONFRA_GENERATED "${CMAKE_BINARY_DIR}/generated")
set(ZONFRA_PRESET_TABLE "${PROJECT_SOURCE_DIR}/effect/presets/FactoryPresets.txt")
set(ZONFRA_PRESET_FOLDER "${ZONFRA_GENERATED}/main-archive")

# Bitmaps of the main archive: one NAME=PATH entry per line. zonfra-artwork draws them, each also
# at double resolution under the same name with "@2x" before ".png", for GUI scales above 100 %.
set(ZONFRA_ARTWORK_FOLDER "${ZONFRA_GENERATED}/artwork")
set(ZONFRA_ARTWORK_NAMES ArrowDownBig ArrowLeftBig ArrowRightBig Background dial54px_small dial87px HorizontalDip
    ledOff ledOn linkBtn MixDialFilmstrip)
set(ZONFRA_MAIN_ARCHIVE_BITMAPS)
set(zonfra_artwork_files)
foreach(name ${ZONFRA_ARTWORK_NAMES})
  foreach(variant "" "@2x")
    list(APPEND ZONFRA_MAIN_ARCHIVE_BITMAPS "${name}${variant}.png=${ZONFRA_ARTWORK_FOLDER}/${name}${variant}.png")
    list(APPEND zonfra_artwork_files "${ZONFRA_ARTWORK_FOLDER}/${name}${variant}.png")
  endforeach()
endforeach()
add_custom_command(
  OUTPUT ${zonfra_artwork_files}
  COMMAND zonfra-artwork "${ZONFRA_ARTWORK_FOLDER}"
  DEPENDS zonfra-artwork
  COMMENT "Drawing the editor's bitmaps"
  VERBATIM)

set(ZONFRA_FONT_FOLDER /usr/share/fonts/truetype)
set(ZONFRA_FONTS_ARIAL
  arial.ttf=${ZONFRA_FONT_FOLDER}/liberation/LiberationSans-Regular.ttf
  arialbd.ttf=${ZONFRA_FONT_FOLDER}/liberation/LiberationSans-Bold.ttf)
set(ZONFRA_FONTS_ROBOTO
  Roboto-Bold.ttf=${ZONFRA_FONT_FOLDER}/roboto/unhinted/RobotoTTF/Roboto-Bold.ttf
  Roboto-Regular.ttf=${ZONFRA_FONT_FOLDER}/roboto/unhinted/RobotoTTF/Roboto-Regular.ttf)
set(ZONFRA_FONTS_ENTYPO
  entypo.ttf=${ZONFRA_FONT_FOLDER}/fonts-entypo/entypo.ttf)

add_custom_command(
  OUTPUT "${ZONFRA_PRESET_FOLDER}/presets.stamp"
  COMMAND ${CMAKE_COMMAND} -E rm -rf "${ZONFRA_PRESET_FOLDER}/presets-root"
  COMMAND zonfra-preset-build "${ZONFRA_PRESET_TABLE}" "${ZONFRA_PRESET_FOLDER}/presets-root"
  COMMAND ${CMAKE_COMMAND} -E touch "${ZONFRA_PRESET_FOLDER}/presets.stamp"
  DEPENDS zonfra-preset-build "${ZONFRA_PRESET_TABLE}"
  COMMENT "Building the factory presets"
  VERBATIM)

# zonfra_resource_image(<name> <depends> <pack arguments...>) sets zonfra_image_source.
function(zonfra_resource_image name depends)
  string(MAKE_C_IDENTIFIER "${name}" identifier)
  set(header "${ZONFRA_GENERATED}/${identifier}.h")
  set(source "${ZONFRA_GENERATED}/${identifier}.cpp")
  set(files)
  foreach(arg ${ARGN})
    if(arg MATCHES "=(.*)$")
      list(APPEND files "${CMAKE_MATCH_1}")
    endif()
  endforeach()
  add_custom_command(
    OUTPUT "${header}"
    COMMAND zonfra-resource-pack "${header}" ${ARGN}
    DEPENDS zonfra-resource-pack ${depends} ${files}
    COMMENT "Packing the ${name} archive"
    VERBATIM)
  set(ZONFRA_IMAGE_NAME "${name}")
  set(ZONFRA_IMAGE_HEADER "${header}")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/ResourceImage.cpp.in" "${source}" @ONLY)
  set_source_files_properties("${source}" PROPERTIES OBJECT_DEPENDS "${header}")
  set(zonfra_image_source "${source}" PARENT_SCOPE)
endfunction()

# Object libraries, so every registration is linked even though nothing names its symbols.
function(zonfra_image_library target)
  add_library(${target} OBJECT ${ARGN})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

zonfra_resource_image(main "${ZONFRA_PRESET_FOLDER}/presets.stamp" --dir "${ZONFRA_PRESET_FOLDER}/presets-root"
  ${ZONFRA_MAIN_ARCHIVE_BITMAPS})
zonfra_image_library(zonfra_main_archive_image ${zonfra_image_source})

set(font_sources)
foreach(fonts arial roboto entypo)
  string(TOUPPER ${fonts} upper)
  zonfra_resource_image(fonts-${fonts} "" ${ZONFRA_FONTS_${upper}})
  list(APPEND font_sources ${zonfra_image_source})
endforeach()
zonfra_image_library(zonfra_font_images ${font_sources})

# velmara_images(OUT): draws the SVG icons of data/icons at 1x and 2x and packs them, with the style
# sheet, into one resource source file whose path is left in OUT. A picture is found under its name:
# ":/images/open_folder.png" and ":/images/open_folder@2x.png".
find_program(RSVG_CONVERT rsvg-convert REQUIRED)

set(icons_dir ${PROJECT_SOURCE_DIR}/data/icons)
set(images_dir ${CMAKE_CURRENT_BINARY_DIR}/images)

# One picture: its name, the drawing, and the style sheet that colours it ("" for none).
macro(velmara_image name drawing style)
  set(style_args "")
  if(NOT "${style}" STREQUAL "")
    set(style_args --stylesheet ${icons_dir}/states/${style}.css)
  endif()
  add_custom_command(
    OUTPUT ${images_dir}/${name}.png ${images_dir}/${name}@2x.png
    COMMAND ${RSVG_CONVERT} --zoom 1 ${style_args} -o ${images_dir}/${name}.png ${icons_dir}/${drawing}
    COMMAND ${RSVG_CONVERT} --zoom 2 ${style_args} -o ${images_dir}/${name}@2x.png
            ${icons_dir}/${drawing}
    DEPENDS ${icons_dir}/${drawing} ${icons_dir}/states
    VERBATIM)
  list(APPEND image_files ${images_dir}/${name}.png ${images_dir}/${name}@2x.png)
endmacro()

function(velmara_images out)
  file(MAKE_DIRECTORY ${images_dir})
  file(GLOB glyphs CONFIGURE_DEPENDS RELATIVE ${icons_dir}/glyphs ${icons_dir}/glyphs/*.svg)
  foreach(glyph IN LISTS glyphs)
    get_filename_component(name ${glyph} NAME_WE)
    velmara_image(${name} glyphs/${glyph} off)
    velmara_image(${name}_selected glyphs/${glyph} on)
    velmara_image(${name}_yellow_selected glyphs/${glyph} hover)
    velmara_image(${name}_disabled glyphs/${glyph} disabled)
  endforeach()
  foreach(button close min max)
    foreach(state normal press hover)
      velmara_image(${button}-${state} window/${button}.svg window-${state})
    endforeach()
  endforeach()
  foreach(tile footer_bg_mid before_noise_bg after_noise_bg)
    velmara_image(${tile} tiles/${tile}.svg "")
  endforeach()
  foreach(size 16 24 32 48 64 128 256)
    set(file ${images_dir}/velmara-${size}.png)
    add_custom_command(
      OUTPUT ${file}
      COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${file} ${icons_dir}/velmara.svg
      DEPENDS ${icons_dir}/velmara.svg
      VERBATIM)
    list(APPEND image_files ${file})
  endforeach()

  set(sheet ${PROJECT_SOURCE_DIR}/data/ui/velmara.qss)
  set(qrc "<RCC><qresource prefix=\"/\">\n")
  string(APPEND qrc "<file alias=\"ui/velmara.qss\">${sheet}</file>\n")
  foreach(file IN LISTS image_files)
    get_filename_component(name ${file} NAME)
    string(APPEND qrc "<file alias=\"images/${name}\">${file}</file>\n")
  endforeach()
  string(APPEND qrc "</qresource></RCC>\n")
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/velmara_images.qrc CONTENT "${qrc}" @ONLY)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/velmara_images.cpp)
  add_custom_command(
    OUTPUT ${source}
    COMMAND Qt6::rcc --name velmara_images -o ${source}
            ${CMAKE_CURRENT_BINARY_DIR}/velmara_images.qrc
    DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/velmara_images.qrc ${sheet} ${image_files}
    VERBATIM)
  set(${out} ${source} PARENT_SCOPE)
endfunction()

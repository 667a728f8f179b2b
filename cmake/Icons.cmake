# The icons: Lucide drawings from npm, copied into the build tree when it is configured. sorvanta_icons(<variable>)
# sets <variable> to the files, to be added as resources.
set(SORVANTA_ICON_FOLDER ${PROJECT_SOURCE_DIR}/node_modules/lucide-static/icons)
set(SORVANTA_ICONS
  audio-lines braces captions check chevron-down chevron-right chevron-up chevrons-up-down circle-check circle-pause
  circle-play circle-question-mark clock cloud-download code-xml copy cpu download file-image file-pen-line
  file-search file-text file-type file-up globe inbox list-plus maximize-2 mic mic-audio-lines network rotate-cw
  search share shield-check table trash triangle-alert users-round x)

function(sorvanta_read_icon name variable)
  set(file ${SORVANTA_ICON_FOLDER}/${name}.svg)
  if(NOT EXISTS ${file})
    message(FATAL_ERROR "The icon ${name} is missing from ${SORVANTA_ICON_FOLDER}. "
      "Fetch the npm packages first: npm ci --ignore-scripts")
  endif()
  file(READ ${file} drawing)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  set(${variable} "${drawing}" PARENT_SCOPE)
endfunction()

# A drawing of which one shape is filled; Lucide itself has outlines only.
function(sorvanta_filled_icon name shape filled_shape)
  sorvanta_read_icon(${name} drawing)
  string(REPLACE "${shape}" "${filled_shape}" filled "${drawing}")
  if(filled STREQUAL drawing)
    message(FATAL_ERROR "The icon ${name} is drawn in another way than expected: ${shape} is not in it.")
  endif()
  file(CONFIGURE OUTPUT icons/${name}-filled.svg CONTENT "${filled}" @ONLY)
endfunction()

function(sorvanta_icons variable)
  foreach(name IN LISTS SORVANTA_ICONS)
    sorvanta_read_icon(${name} drawing)
    file(CONFIGURE OUTPUT icons/${name}.svg CONTENT "${drawing}" @ONLY)
  endforeach()
  sorvanta_filled_icon(circle-dot [[r="1"]] [[r="4" fill="currentColor" stroke="none"]])
  sorvanta_filled_icon(circle-stop [[rx="1"]] [[rx="1" fill="currentColor"]])
  sorvanta_filled_icon(play [[fill="none"]] [[fill="currentColor"]])
  sorvanta_filled_icon(pause [[fill="none"]] [[fill="currentColor"]])

  set(files ${SORVANTA_ICONS} circle-dot-filled circle-stop-filled play-filled pause-filled)
  list(TRANSFORM files APPEND .svg)
  foreach(file IN LISTS files)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/icons/${file} PROPERTIES QT_RESOURCE_ALIAS ${file})
  endforeach()
  list(TRANSFORM files PREPEND ${CMAKE_CURRENT_BINARY_DIR}/icons/)
  set(${variable} ${files} PARENT_SCOPE)
endfunction()

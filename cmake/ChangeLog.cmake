# Converts CHANGELOG.md to the forms of AppStream and Debian. It holds releases
# ("## [1.2.3] - 2030-12-31", newest first), and in them items that begin with "- " and go on indented.

# Seconds from 1970 to noon of a date.
function(hfp_seconds_to date result)
  string(REGEX MATCH "^([0-9]+)-0?([0-9]+)-0?([0-9]+)$" matched ${date})
  set(year ${CMAKE_MATCH_1})
  set(month ${CMAKE_MATCH_2})
  set(day ${CMAKE_MATCH_3})
  # Years that begin in March have their leap day at the end.
  if(month LESS 3)
    math(EXPR year "${year} - 1")
    math(EXPR month "${month} + 12")
  endif()
  math(EXPR days "365 * ${year} + ${year} / 4 - ${year} / 100 + ${year} / 400\
    + (153 * (${month} - 3) + 2) / 5 + ${day} - 719469")
  math(EXPR seconds "${days} * 86400 + 43200")
  set(${result} ${seconds} PARENT_SCOPE)
endfunction()

function(hfp_mail_date date result)
  hfp_seconds_to(${date} seconds)
  set(before "$ENV{SOURCE_DATE_EPOCH}")
  set(ENV{SOURCE_DATE_EPOCH} ${seconds})
  string(TIMESTAMP text "%a, %d %b %Y %H:%M:%S +0000" UTC)
  set(ENV{SOURCE_DATE_EPOCH} "${before}")
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

# The items of a release's text as a list, each on one line.
function(hfp_items text result)
  string(REGEX REPLACE "\n  +" " " text "${text}")
  string(REGEX MATCHALL "\n- [^\n]+" items "${text}")
  list(TRANSFORM items REPLACE "^\n- " "")
  set(${result} "${items}" PARENT_SCOPE)
endfunction()

function(hfp_release_element version date items result)
  list(JOIN items "\n" lines)
  string(REPLACE "&" "&amp;" lines "${lines}")
  string(REPLACE "<" "&lt;" lines "${lines}")
  string(REPLACE "\n" "</li>\n          <li>" lines "${lines}")
  set(${result} "\
    <release version=\"${version}\" date=\"${date}\">
      <description>
        <ul>
          <li>${lines}</li>
        </ul>
      </description>
    </release>
" PARENT_SCOPE)
endfunction()

function(hfp_debian_entry version date text package maintainer result)
  hfp_mail_date(${date} mail_date)
  string(REGEX MATCHALL "\n(- |  )[^\n]+" lines "${text}")
  list(TRANSFORM lines REPLACE "^\n- " "  * ")
  list(TRANSFORM lines REPLACE "^\n  " "    ")
  list(JOIN lines "\n" lines)
  set(${result} "\
${package} (${version}) unstable; urgency=medium

${lines}

 -- ${maintainer}  ${mail_date}

" PARENT_SCOPE)
endfunction()

# Reads the file. Sets release_date to the date of the newest release, which must be of the project's
# version; release_elements to what AppStream metadata says of all releases; and debian_change_log to
# the change log of a Debian package of that name.
function(hfp_read_change_log file package maintainer)
  file(READ ${file} text)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  if(text MATCHES ";")
    message(FATAL_ERROR "${file}: a semicolon would tear its item in two")
  endif()
  string(REPLACE "\n## [" ";[" releases "${text}")
  list(POP_FRONT releases)
  list(FILTER releases EXCLUDE REGEX "^.Unreleased")
  foreach(release IN LISTS releases)
    if(NOT release MATCHES "^.([0-9.]+)\\] - ([0-9]+-[0-9]+-[0-9]+)\n")
      message(FATAL_ERROR "${file}: not a release: ${release}")
    endif()
    set(version ${CMAKE_MATCH_1})
    set(date ${CMAKE_MATCH_2})
    list(APPEND versions ${version})
    list(APPEND dates ${date})
    hfp_items("${release}" items)
    hfp_release_element(${version} ${date} "${items}" element)
    hfp_debian_entry(${version} ${date} "${release}" ${package} "${maintainer}" entry)
    string(APPEND elements "${element}")
    string(APPEND entries "${entry}")
  endforeach()
  list(GET versions 0 newest)
  if(NOT newest VERSION_EQUAL PROJECT_VERSION)
    message(FATAL_ERROR "${file} begins with ${newest}, but this is ${PROJECT_VERSION}")
  endif()
  list(GET dates 0 release_date)
  set(release_date ${release_date} PARENT_SCOPE)
  set(release_elements "${elements}" PARENT_SCOPE)
  set(debian_change_log "${entries}" PARENT_SCOPE)
endfunction()

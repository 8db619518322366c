# The headers under the name of the library: <ZentuKit/event_mgr.h>, <ZentuKit/EventManager>, and all
# of them as <ZentuKit/ZentuKit>. In the tree they refer to include/, installed to their neighbours.

set(zentu_classes
  action_mgr.h ActionManager
  cmdline_parser.h CmdLineParser
  context_mgr.h ContextManager
  event_mgr.h EventManager
  file_watcher.h FileWatcher
  ievent.h IEvent
  ievent_handler.h IEventHandler
  lambda_slot.h LambdaSlotWrapper
  mdi_area.h IMdiSubWindow
  mdi_area.h MdiArea
  object_pool.h ObjectPool
  option_dlg.h IOptionPage
  option_dlg.h OptionDialog
  proxy_act.h ProxyAction
  proxy_act.h ProxyActionManager
  zentu_host.h DocumentActions
  zentu_host.h DocumentNavigator
  zentu_host.h FileReloader)

# Writes a header that includes others.
function(zentu_forward file)
  list(TRANSFORM ARGN REPLACE "(.+)" "#include \"\\1\"" OUTPUT_VARIABLE lines)
  list(JOIN lines "\n" text)
  file(CONFIGURE OUTPUT "${file}" CONTENT "#pragma once\n${text}\n" @ONLY)
endfunction()

set(zentu_tree_headers "${PROJECT_BINARY_DIR}/include")
set(zentu_class_headers "${PROJECT_BINARY_DIR}/class-headers")

file(GLOB zentu_public_headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/include/*.h")
set(zentu_header_names)
foreach(header IN LISTS zentu_public_headers)
  get_filename_component(name "${header}" NAME)
  list(APPEND zentu_header_names "${name}")
  zentu_forward("${zentu_tree_headers}/ZentuKit/${name}" "${header}")
endforeach()

zentu_forward("${zentu_tree_headers}/ZentuKit/wisp_recorder.h"
  "${PROJECT_SOURCE_DIR}/wisp/wisp_recorder.h")

# For tests: QtTest and the logger beside the library is all that they need.
foreach(name IN ITEMS zentu_trace_normal.h zentu_trace_test.h)
  zentu_forward("${zentu_tree_headers}/ZentuKit/${name}"
    "${PROJECT_SOURCE_DIR}/inspect/testing/${name}")
endforeach()

set(rest ${zentu_classes})
while(rest)
  list(POP_FRONT rest header class)
  zentu_forward("${zentu_tree_headers}/ZentuKit/${class}" "${header}")
  zentu_forward("${zentu_class_headers}/${class}" "${header}")
endwhile()
zentu_forward("${zentu_tree_headers}/ZentuKit/ZentuKit" ${zentu_header_names})
zentu_forward("${zentu_class_headers}/ZentuKit" ${zentu_header_names})

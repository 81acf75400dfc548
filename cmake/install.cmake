# What "cmake --install" puts where, in components that the packages take apart:
#   programa   xvcr with the library of sentences beside it; natively its manual page and completion too
#   servidor   the component's server with its proxy/stub library (Windows)
#   cliente    the CMake package XVCliente: headers, libraries and, for other languages on Windows, the
#              interface definition with what is made of it
# Of a tree of 32 bits the server's part is the proxy/stub library alone.
# Windows looks for a program's libraries beside it, so that there everything that runs lies in one folder.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(cabecalhos ${CMAKE_INSTALL_INCLUDEDIR}/xvcr)
set(bibliotecas ${CMAKE_INSTALL_LIBDIR}/xvcr)
set(pacote ${CMAKE_INSTALL_LIBDIR}/cmake/XVCliente)
if(WIN32)
  set(programas .)
else()
  set(programas lib/xvcr)
endif()

if(TARGET xvcr)
  install(PROGRAMS $<TARGET_FILE:xvcr> $<TARGET_FILE:XVLMensagem> DESTINATION ${programas} COMPONENT programa)
endif()
foreach(alvo XVCR_Middleware XVCR_MiddlewarePS)
  if(TARGET ${alvo})
    install(PROGRAMS $<TARGET_FILE:${alvo}> DESTINATION ${programas} COMPONENT servidor)
  endif()
endforeach()
if(NOT WIN32)
  # Both pages come from the program itself.
  install(CODE "
    set(feito ${CMAKE_CURRENT_BINARY_DIR}/feito)
    file(MAKE_DIRECTORY \${feito})
    execute_process(COMMAND $<TARGET_FILE:xvcr> manual OUTPUT_FILE \${feito}/xvcr.1 COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND $<TARGET_FILE:xvcr> completa bash OUTPUT_FILE \${feito}/xvcr
      COMMAND_ERROR_IS_FATAL ANY)
    file(CREATE_LINK ../${programas}/xvcr \${feito}/atalho SYMBOLIC)" COMPONENT programa)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/feito/xvcr.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
    COMPONENT programa)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/feito/xvcr
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT programa)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/feito/atalho DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME xvcr
    COMPONENT programa)
endif()

# The client, with the headers that its own header reaches; and the interface of provider libraries, which stands
# alone.
foreach(cabecalho
    client/XVCliente.h client/XVClienteCodigos.h contract/XVCR_Enumeracoes.h contract/XVCR_RegistrosPS.h
    contract/XVDadosCR.h contract/XVEnumeracoesTexto.h platform/XVRelogio.h platform/XVTipos.h
    suite/providers/XVProvedorPlugin.h support/values/XVData.h support/values/XVDmc.h)
  get_filename_component(pasta ${cabecalho} DIRECTORY)
  install(FILES ${cabecalho} DESTINATION ${cabecalhos}/${pasta} COMPONENT cliente)
endforeach()
if(WIN32)
  set(gerado ${CMAKE_BINARY_DIR}/server/idl)
  install(FILES contract/XVCR_Middleware.idl contract/XVCR_MiddlewareGuids.h contract/XVCR_LayoutRegistros.inc
    DESTINATION ${cabecalhos}/contract COMPONENT cliente)
  install(FILES ${gerado}/XVCR_Middleware_idl.h ${gerado}/XVCR_Middleware_i.c
    DESTINATION ${cabecalhos}/com COMPONENT cliente)
endif()
set(alvos xv_opcoes xv_platform xv_support xv_contract xv_suite xv_quadro xv_cliente)
if(TARGET xv_xvrpcdll)
  list(APPEND alvos xv_xvdatabase xv_middleware xv_verificacao xv_xvrpcdll)
endif()
install(TARGETS ${alvos} EXPORT XVClienteAlvos ARCHIVE DESTINATION ${bibliotecas} COMPONENT cliente)
install(EXPORT XVClienteAlvos NAMESPACE XVCliente:: DESTINATION ${pacote} COMPONENT cliente)
configure_package_config_file(cmake/XVClienteConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/XVClienteConfig.cmake
  INSTALL_DESTINATION ${pacote} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/XVClienteConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/XVClienteConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/XVClienteConfigVersion.cmake DESTINATION ${pacote} COMPONENT cliente)

#include "platform/XVPlataforma.h"
#include "platform/XVRegistroArquivo.h"

IXVRegistro& XVPlataforma::RegistroNativo() {
    static CXVRegistroArquivo& rRegistro = *new CXVRegistroArquivo;
    return rRegistro;
}

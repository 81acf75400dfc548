#include "platform/XVPlataforma.h"
#include "platform/XVRegistryArquivo.h"

IXVRegistry& XVPlataforma::RegistryNativo() {
    static CXVRegistryArquivo& rRegistro = *new CXVRegistryArquivo;
    return rRegistro;
}

#include "support/XVCapturaTrace.h"

#include <algorithm>

namespace {
thread_local CXVCapturaTrace* g_pCapturaAtual = nullptr;
}

CXVCapturaTrace::CXVCapturaTrace(bool bSomenteCaptura)
    : m_pAnterior(g_pCapturaAtual), m_bSomenteCaptura(bSomenteCaptura) {
    g_pCapturaAtual = this;
}

CXVCapturaTrace::~CXVCapturaTrace() {
    g_pCapturaAtual = m_pAnterior;
}

CXVCapturaTrace* CXVCapturaTrace::GetAtual() {
    return g_pCapturaAtual;
}

bool CXVCapturaTrace::Contem(const std::string& sExpressao) const {
    return std::any_of(m_listaFalhas.begin(), m_listaFalhas.end(),
                       [&](const SFalhaCapturada& r) { return r.sExpressao == sExpressao; });
}

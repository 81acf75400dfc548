/* Identifiers of the component. The one place where they stand: the interface definition, the component,
   the server, the client and the registration take them from here. They never change. */
#ifndef XVCR_MIDDLEWARE_GUIDS_H
#define XVCR_MIDDLEWARE_GUIDS_H

/* Identifiers, not subtractions. */
/* clang-format off */
#define XV_UUID_IXVCR_MIDDLEWARE c2141cb5-b40b-41f8-a6aa-c8c9c30aad48
#define XV_UUID_CLASSE_MIDDLEWARE 78415b84-1d9e-4939-b37a-87f6aa9d6516
#define XV_UUID_APLICACAO_MIDDLEWARE c99599a3-c061-4377-822d-8863ccb0fc7a
/* clang-format on */

#define XV_PROGID_MIDDLEWARE "XVCR.Middleware.1"
#define XV_PROGID_MIDDLEWARE_SEM_VERSAO "XVCR.Middleware"

/* The text of an identifier: XV_TEXTO_UUID(XV_UUID_...). */
#define XV_TEXTO_UUID_INTERNO(x) #x
#define XV_TEXTO_UUID(x) XV_TEXTO_UUID_INTERNO(x)

/* A text of this file in wide characters: XV_LARGO(XV_PROGID_MIDDLEWARE). */
#define XV_LARGO_INTERNO(x) L##x
#define XV_LARGO(x) XV_LARGO_INTERNO(x)

#endif

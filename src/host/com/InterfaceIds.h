#ifndef HALVANE_HOST_COM_INTERFACE_IDS_H
#define HALVANE_HOST_COM_INTERFACE_IDS_H

// The identifiers of the published interfaces, for the interface definitions (uuid(HALVANE_IID_...)) and for
// C++ alike. An identifier is published once and for all: it never changes. Formatted, the pieces of an
// identifier would fall apart.

// clang-format off
#define HALVANE_IID_IEXTERNALPROCESSOR 4da89764-ada2-401d-b3e2-957ff3deb3c9
#define HALVANE_IID_IEXTERNALPROGID d2f2a9b8-4c61-405c-ac76-c23b68ad97ce
#define HALVANE_IID_DCOLLECTION 4af4486e-75cf-4c52-873f-a1efd0f04cc8
#define HALVANE_IID_CLSEXPORT b11d5bd7-3f69-42a0-a9c8-3f29e723c2c2
// clang-format on

#endif

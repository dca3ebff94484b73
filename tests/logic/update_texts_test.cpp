#include "update/update_texts.h"

#include <gtest/gtest.h>

#include "text/translation.h"

namespace kestrane {
namespace {

/// The texts of both languages.
struct Texts {
    std::wstring spanish;
    std::wstring english;
};

template <typename Function>
Texts TextsOf(Function function) {
    Texts texts;
    SetLanguage(ActiveEnglish);
    texts.english = function();
    SetLanguage(ActiveSpanish);
    texts.spanish = function();
    return texts;
}

TEST(DownloadFailureText, SaysWhy) {
    struct {
        DownloadFailure failure;
        const wchar_t* spanish;
        const wchar_t* english;
    } const cases[] = {
        {{}, L"", L""},
        {{DownloadStep::Address},
         L"No se pudo descargar la versión nueva: dirección no válida.",
         L"The new version could not be downloaded: invalid address."},
        {{DownloadStep::Answer},
         L"No se pudo descargar la versión nueva: sin respuesta del servidor.",
         L"The new version could not be downloaded: no answer from the server."},
        {{DownloadStep::Save, 32},
         L"No se pudo guardar la versión nueva junto a kestrane (código 32).",
         L"The new version could not be saved next to kestrane (code 32)."},
        {{DownloadStep::Save, 0},
         L"No se pudo guardar la versión nueva junto a kestrane (código 0).",
         L"The new version could not be saved next to kestrane (code 0)."},
        {{DownloadStep::Save, 4294967295},
         L"No se pudo guardar la versión nueva junto a kestrane (código 4294967295).",
         L"The new version could not be saved next to kestrane (code 4294967295)."},
        {{DownloadStep::Cancelled}, L"Descarga cancelada.", L"Download cancelled."},
        {{DownloadStep::Connection},
         L"No se pudo descargar la versión nueva: la conexión se ha cortado.",
         L"The new version could not be downloaded: the connection dropped."},
        {{DownloadStep::Content},
         L"El fichero descargado no coincide con el publicado (tamaño o huella). No se ha cambiado nada; prueba más "
         L"tarde.",
         L"The downloaded file does not match the published one (size or fingerprint). Nothing was changed; try again "
         L"later."},
    };
    for (const auto& c : cases) {
        const Texts texts = TextsOf([&c] { return DownloadFailureText(c.failure); });
        EXPECT_EQ(texts.spanish, c.spanish);
        EXPECT_EQ(texts.english, c.english);
    }
}

TEST(DevelopmentCopyText, SendsToTheWebsite) {
    const Texts texts = TextsOf(&DevelopmentCopyText);
    EXPECT_EQ(texts.spanish,
              L"kestrane se está ejecutando desde una compilación, no desde el exe publicado: no se cambia nada. "
              L"Descarga la versión nueva desde la web.");
    EXPECT_EQ(texts.english,
              L"kestrane is running from a build, not from the published exe: nothing is changed. Download the new "
              L"version from the website.");
}

TEST(FolderNotWritableText, SendsToTheWebsite) {
    const Texts texts = TextsOf(&FolderNotWritableText);
    EXPECT_EQ(
        texts.spanish,
        L"No hay permiso para escribir en la carpeta de kestrane, así que no puede actualizarse sola. Descarga la "
        L"versión nueva desde la web y sustitúyela a mano.");
    EXPECT_EQ(texts.english,
              L"There is no permission to write to kestrane's folder, so it cannot update itself. Download the new "
              L"version from the website and replace it by hand.");
}

TEST(ReplaceFailureText, TellsTheCodeAndThatNothingIsLost) {
    const Texts texts = TextsOf([] { return ReplaceFailureText(5); });
    EXPECT_EQ(texts.spanish,
              L"No se pudo poner la versión nueva en lugar de la actual (código 5).\n\nkestrane sigue con la versión "
              L"que tenías.");
    EXPECT_EQ(texts.english,
              L"The new version could not replace the current one (code 5).\n\nkestrane stays on the version you had.");
}

TEST(OfferText, NamesBothVersions) {
    const Texts texts = TextsOf([] { return OfferText("0.2.0", L"0.1.0"); });
    EXPECT_EQ(texts.spanish,
              L"Versión 0.2.0 disponible (tienes la 0.1.0). Haz clic para ver los cambios y actualizar.");
    EXPECT_EQ(texts.english, L"Version 0.2.0 available (you have 0.1.0). Click to see the changes and update.");
}

}  // namespace
}  // namespace kestrane

// A reader whose browser prefers Spanish gets the Spanish page, unless a link has chosen this one: such links end in #en.
if (!location.hash) {
    const preferred = navigator.languages.find((language) => /^(en|es)(-|$)/i.test(language));
    if (/^es/i.test(preferred)) {
        location.replace(document.querySelector('link[hreflang="es"]').href);
    }
}

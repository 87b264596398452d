// Hands over what the page offers once it and its frames are loaded and their scripts ran.
const done = arguments[0];

// Addresses as the browser resolved them; those of SVG are plain attributes.
function address(element) {
  const href = element.href ?? element.src ?? element.data ?? '';
  if (typeof href === 'string') return href;
  return href.baseVal && new URL(href.baseVal, element.ownerDocument.baseURI).href;
}

function all(page, selector) {
  return [...page.querySelectorAll(selector)];
}

function documents(page) {
  const frames = all(page, 'iframe, frame, object, embed');
  const inner = frames.map((frame) => frame.contentDocument).filter((found) => found);
  return [page, ...inner.flatMap(documents)];
}

// The pages that the search box opens: one for each first letter, and one that has found nothing.
function searchResults() {
  if (typeof indexSectionsWithContent === 'undefined') return [];
  const letters = (section) => [...Array(indexSectionsWithContent[section].length).keys()];
  const page = (section, letter) => `${indexSectionNames[section]}_${letter.toString(16)}.html`;
  return Object.keys(indexSectionsWithContent)
      .flatMap((section) => letters(section).map((letter) => page(section, letter)))
      .concat('nomatches.html')
      .map((name) => new URL('search/' + name, document.baseURI).href);
}

// Scripts may have put pictures there only now. One that cannot be had is settled at once.
function settled(pictures) {
  const late = new Promise((resolve) => setTimeout(resolve, 5000));
  return Promise.race([late, Promise.allSettled(pictures.map((img) => img.decode()))]);
}

async function collect() {
  const pages = documents(document);
  const linking = 'a, area, link, script, iframe, frame, object, embed, image';
  const links = pages.flatMap((page) => all(page, linking).map(address).filter((url) => url));
  const pictures = pages.flatMap((page) => all(page, 'img'));
  await settled(pictures);
  const anchors = all(document, '[id]').map((element) => element.id);
  done({
    links: [...new Set(links.concat(searchResults()))],
    anchors: anchors.concat(all(document, 'a[name]').map((element) => element.name)),
    pictures: pictures.length,
    broken: pictures.filter((img) => !img.complete || !img.naturalWidth).map((img) => img.src),
  });
}

// One turn later, when handlers of the same event have run.
if (document.readyState === 'complete') {
  setTimeout(collect);
} else {
  addEventListener('load', () => setTimeout(collect));
}

// Stylelint's check of the style sheets the pages carry, src/report/assets/*.css (`npm run lint`):
// the rules that find mistakes (unknown properties, units and selectors, invalid colours,
// duplicates), none about style.
export default {
  extends: ['stylelint-config-recommended'],
  rules: {
    // It reports a selector that follows a more specific one ending in the same part, such as
    // ".theme-toggle svg" after ".brand .glyph svg", although the two never match the same element;
    // the sheets keep each component's rules together instead.
    'no-descending-specificity': null
  }
};

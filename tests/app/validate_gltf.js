// Prints what the validator finds in each file, and fails if any of it is an error.
const fs = require("fs");
const path = require("path");
const validator = require("gltf-validator");

async function validate(file) {
  const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {
    uri: path.basename(file),
    maxIssues: 50,
    externalResourceFunction: (uri) =>
      fs.promises.readFile(path.join(path.dirname(file), decodeURIComponent(uri))).then((bytes) => new Uint8Array(bytes)),
  });
  const { numErrors, numWarnings, numInfos, messages } = report.issues;
  console.log(`${file}: ${numErrors} errors, ${numWarnings} warnings, ${numInfos} infos`);
  for (const { severity, code, message, pointer } of messages)
    if (severity < 2) console.log(`  ${code} ${pointer}: ${message}`);
  return numErrors;
}

Promise.all(process.argv.slice(2).map(validate)).then(
  (counts) => process.exit(counts.some((count) => count > 0) ? 1 : 0),
  (problem) => {
    console.error(String(problem));
    process.exit(1);
  }
);

